#include "OptionTable.h"

#include <QCoreApplication>

namespace {

constexpr OptionRow kRows[]{
    {"d", "device", "SERIAL",
     QT_TRANSLATE_NOOP("OptionTable",
                       "the camera with this serial number, or with the only one that "
                       "begins so; may be repeated"),
     false},
    {"a", "all", nullptr, QT_TRANSLATE_NOOP("OptionTable", "all cameras"), false},
    {nullptr, "model", "MODEL", QT_TRANSLATE_NOOP("OptionTable", "the cameras of this model"),
     false},
    {nullptr, "site", nullptr, QT_TRANSLATE_NOOP("OptionTable", "for all users of this computer"),
     false},
    {"n", "dry-run", nullptr,
     QT_TRANSLATE_NOOP("OptionTable", "say what would be done, and do not do it"), false},
    {nullptr, "once", nullptr,
     QT_TRANSLATE_NOOP("OptionTable", "apply what is assigned to each camera, then end"), false},
    {nullptr, "reinstall", nullptr,
     QT_TRANSLATE_NOOP("OptionTable", "also when the camera has this version"), false},
    {nullptr, "parallel", "N",
     QT_TRANSLATE_NOOP("OptionTable", "write up to N cameras on different buses at a time"), false},
    {"o", "output", "FILE", QT_TRANSLATE_NOOP("OptionTable", "write into this file"), false},
    {nullptr, "redact", nullptr,
     QT_TRANSLATE_NOOP("OptionTable", "leave out serial numbers and names of users"), false},
    {"j", "json", nullptr, QT_TRANSLATE_NOOP("OptionTable", "print one JSON document"), true},
    {nullptr, "json-progress", nullptr,
     QT_TRANSLATE_NOOP("OptionTable", "print progress as JSON lines on standard error"), true},
    {"t", "timeout", "SECONDS",
     QT_TRANSLATE_NOOP("OptionTable", "how long to wait for another program that has the camera; "
                                      "5 without this option"),
     true},
    {"q", "quiet", nullptr,
     QT_TRANSLATE_NOOP("OptionTable", "print nothing but errors and what was asked for"), true},
    {"v", "verbose", nullptr,
     QT_TRANSLATE_NOOP("OptionTable", "print the lines of the log on standard error"), true},
    {"h", "help", nullptr, QT_TRANSLATE_NOOP("OptionTable", "print help"), true},
    {nullptr, "version", nullptr, QT_TRANSLATE_NOOP("OptionTable", "print the version"), true},
};

} // namespace

ConstRange<OptionRow> OptionTable::rows()
{
    return ConstRange(kRows);
}

QCommandLineOption OptionTable::make(const OptionRow& row)
{
    QStringList names;
    if (row.shortName)
        names << QString::fromLatin1(row.shortName);
    names << QString::fromLatin1(row.name);
    return QCommandLineOption(names, text(row),
                              row.valueName ? QString::fromLatin1(row.valueName) : QString());
}

QString OptionTable::text(const OptionRow& row)
{
    return QCoreApplication::translate("OptionTable", row.text);
}
