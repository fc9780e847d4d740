#pragma once

#include "CameraLink.h"
#include "Failure.h"
#include "Invocation.h"
#include "Terminal.h"

#include <deque>
#include <optional>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>

/// What a command has done with one camera.
struct CameraResult
{
    enum class Outcome { Done, NothingToDo, Failed };

    Outcome outcome = Outcome::Done;
    std::optional<Failure> failure; ///< when it has failed
    QString serial;                 ///< empty when the camera did not say
    QString name;
    QString model;
    QString path;
    QJsonObject details;     ///< further members of the camera's object
    QList<QStringList> rows; ///< for people

    /// Who the camera is, as far as that is known.
    [[nodiscard]] static CameraResult of(const CameraLink& link);

    void fail(const Failure& why)
    {
        outcome = Outcome::Failed;
        failure = why;
    }
    [[nodiscard]] QJsonObject toJson() const;
    /// "NOVA EDGE SVAA1 (/dev/hidraw0)"
    [[nodiscard]] QString title() const;
};

/// What the program prints in the end and returns to the shell: collects the results of a command
/// and writes them as text or as one JSON document.
class Report
{
    Q_DECLARE_TR_FUNCTIONS(Report)

public:
    static constexpr int kSchema = 1;

    Report(const Invocation& invocation, const Terminal& terminal);

    /// A new result for a camera; valid as long as the report.
    CameraResult& add(const CameraLink& link);
    void fail(const Failure& failure) { m_failure = failure; }
    /// Something went wrong beside the matter: a line on standard error, a member of the document.
    void warn(const Failure& warning) { m_warnings.append(warning); }
    /// A member of the document.
    void set(const QString& key, const QJsonValue& value) { m_members.insert(key, value); }
    /// The command looked at no camera, and there was nothing to do.
    void setNothingToDo() { m_isNothingToDo = true; }
    /// Text for people, instead of the rows of the cameras.
    void setText(const QString& text) { m_text = text; }
    /// Rows of one table for people, instead of a paragraph for each camera.
    void setTable(const QList<QStringList>& table) { m_table = table; }
    /// The cameras' rows are the answer itself and not a note about it; --quiet prints them too.
    void setAnswer() { m_isAnswer = true; }
    /// The command lists cameras: one that does not answer is no failure unless none does.
    void ignoreCameraFailures() { m_ignoresFailures = true; }

    [[nodiscard]] const std::deque<CameraResult>& cameras() const { return m_cameras; }
    [[nodiscard]] ExitCode exitCode() const;
    [[nodiscard]] QJsonObject toJson() const;
    /// Prints it.
    void print() const;

    /// Prints at once, on standard error, what is under way: a line for people, or a line with a
    /// JSON object when that was asked for. @p event has the member "event".
    void progress(const QString& text, const QJsonObject& event) const;
    /// The same for what was done with a camera.
    void progress(const CameraResult& camera, const QString& event) const;

private:
    void printText() const;
    void printFailure(const Failure& failure, const QString& about) const;

    const Invocation& m_invocation;
    const Terminal& m_terminal;
    std::deque<CameraResult> m_cameras;
    QList<Failure> m_warnings;
    std::optional<Failure> m_failure;
    QJsonObject m_members;
    QString m_text;
    QList<QStringList> m_table;
    bool m_isNothingToDo = false;
    bool m_isAnswer = false;
    bool m_ignoresFailures = false;
};
