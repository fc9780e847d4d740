#include "PlainText.h"
#include "PrometheusText.h"
#include "QtPrinters.h"
#include "Redaction.h"

#include <gtest/gtest.h>
#include <QJsonArray>
#include <QJsonObject>

namespace {

TEST(PrometheusText, EachMetricIsOneBlock)
{
    PrometheusText text;
    text.declare("a", "First.");
    text.declare("b", "Second.");
    text.declare("unused", "Never.");
    text.add("b", {}, 0.0025);
    text.add("a", {{"serial", "SVAA1"}, {"model", "X"}}, 1);
    text.add("a", {{"serial", "SVBB2"}, {"model", "X"}}, 0);
    EXPECT_EQ(text.text(), "# HELP a First.\n# TYPE a gauge\na{serial=\"SVAA1\",model=\"X\"} 1\n"
                           "a{serial=\"SVBB2\",model=\"X\"} 0\n"
                           "# HELP b Second.\n# TYPE b gauge\nb 0.0025\n");
}

TEST(PrometheusText, LabelsAreEscaped)
{
    PrometheusText text;
    text.declare("a", "First.");
    text.add("a", {{"serial", "x\"\\\ny"}}, 1);
    EXPECT_TRUE(text.text().contains("a{serial=\"x\\\"\\\\\\ny\"} 1\n"));
}

TEST(Redaction, ReplacesWholeWords)
{
    Redaction redaction;
    redaction.hideSerial("SVAA1");
    redaction.hideSerial("SVAA12");
    redaction.hideSerial("");
    redaction.hideUser("al");
    EXPECT_EQ(redaction.apply("SVAA12 and SVAA1 of al: /home/al/x, also total"),
              "SERIAL-2 and SERIAL-1 of USER-1: /home/USER-1/x, also total");
}

TEST(PlainText, MembersAreLines)
{
    const QJsonObject object{{"a", 1}, {"b", QJsonArray{"x", QJsonObject{{"c", QJsonValue()}}}}};
    EXPECT_EQ(PlainText::of(object), "a: 1\nb:\n  x\n  -\n    c: -\n");
}

} // namespace
