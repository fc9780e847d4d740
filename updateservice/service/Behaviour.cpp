#include "Behaviour.h"

#include <QMap>
#include <QStringList>

namespace updateservice {

namespace {

template <typename Value>
bool choose(const QMap<QString, Value>& values, const QString& name, Value& out)
{
    const auto found = values.constFind(name);
    if (found != values.constEnd())
        out = *found;
    return found != values.constEnd();
}

bool number(const QString& text, std::int64_t& out)
{
    bool good = false;
    const qlonglong value = text.toLongLong(&good);
    if (good && value >= 0)
        out = value;
    return good && value >= 0;
}

bool answer(const QStringList& words, Behaviour& behaviour)
{
    using Answer = Behaviour::Answer;
    if (!choose<Answer>({{"uptodate", Answer::UpToDate},
                         {"broken", Answer::Broken},
                         {"huge", Answer::Huge},
                         {"bomb", Answer::Bomb}},
                        words.value(0), behaviour.answer))
        return false;
    return words.size() == 1 ||
           (behaviour.answer == Answer::Huge && number(words.at(1), behaviour.hugeBytes));
}

bool stall(const QStringList& words, Behaviour& behaviour)
{
    using Stall = Behaviour::Stall;
    if (!choose<Stall>(
            {{"handshake", Stall::Handshake}, {"head", Stall::Head}, {"body", Stall::Body}},
            words.value(1), behaviour.stall))
        return false;
    return words.size() == 2 ||
           (behaviour.stall == Stall::Body && number(words.at(2), behaviour.stallAt));
}

bool truncate(const QStringList& words, Behaviour& behaviour)
{
    behaviour.endAtPieces = words.value(2) == QLatin1String("pieces");
    return number(words.value(1), behaviour.truncateAt);
}

bool status(const QString& text, Behaviour& behaviour)
{
    std::int64_t value = 0;
    if (!number(text, value) || value < 100 || value > 999)
        return false;
    behaviour.status = static_cast<int>(value);
    return true;
}

bool applyWords(const QStringList& words, Behaviour& behaviour)
{
    using Certificate = Behaviour::Certificate;
    using Redirect = Behaviour::Redirect;
    using Framing = Behaviour::Framing;
    const QString name = words.value(0);
    const QString argument = words.value(1);
    if (name == QLatin1String("status"))
        return status(argument, behaviour);
    if (name == QLatin1String("slow"))
        return number(argument, behaviour.bytesPerSecond);
    if (name == QLatin1String("truncate"))
        return truncate(words, behaviour);
    if (name == QLatin1String("stall"))
        return stall(words, behaviour);
    if (name == QLatin1String("redirect"))
        return choose<Redirect>({{"once", Redirect::Once},
                                 {"loop", Redirect::Loop},
                                 {"http", Redirect::Http},
                                 {"file", Redirect::File},
                                 {"elsewhere", Redirect::Elsewhere}},
                                argument, behaviour.redirect);
    if (name == QLatin1String("framing"))
        return choose<Framing>(
            {{"length", Framing::Length}, {"chunked", Framing::Chunked}, {"close", Framing::Close}},
            argument, behaviour.framing);
    if (name == QLatin1String("tls"))
        return choose<QSsl::SslProtocol>({{"1.0", QSsl::TlsV1_0},
                                          {"1.1", QSsl::TlsV1_1},
                                          {"1.2", QSsl::TlsV1_2},
                                          {"1.3", QSsl::TlsV1_3}},
                                         argument, behaviour.protocol);
    if (name == QLatin1String("certificate"))
        return choose<Certificate>({{"trusted", Certificate::Trusted},
                                    {"selfsigned", Certificate::SelfSigned},
                                    {"wronghost", Certificate::WrongHost},
                                    {"expired", Certificate::Expired},
                                    {"unknown", Certificate::Unknown}},
                                   argument, behaviour.certificate);
    return answer(words, behaviour);
}

} // namespace

bool Behaviour::apply(const QString& line)
{
    Behaviour changed = *this;
    if (!applyWords(line.split(QLatin1Char(' '), Qt::SkipEmptyParts), changed))
        return false;
    *this = changed;
    return true;
}

} // namespace updateservice
