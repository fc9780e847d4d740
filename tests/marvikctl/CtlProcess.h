#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// marvikctl as a user starts it, with a home of its own that is kept for all calls of an object.
class CtlProcess
{
public:
    struct Run
    {
        int exitCode = -1;
        QString output;
        QString errors;

        /// The document on standard output; empty when it is none.
        [[nodiscard]] QJsonObject json() const;
        /// The object of a camera in the document.
        [[nodiscard]] QJsonObject camera(int index = 0) const;
        /// The error of the document or, without one, of its first camera.
        [[nodiscard]] QJsonObject error() const;
    };

    CtlProcess();

    /// Runs it to its end.
    /// @param line arguments, divided by blanks
    [[nodiscard]] Run run(const QString& line) const;
    /// The same with arguments that may have blanks.
    [[nodiscard]] Run run(const QStringList& arguments) const;
    /// Starts it; for a program that is to be disturbed.
    void start(QProcess& process, const QStringList& arguments) const;

    /// A copy in another folder, to be started instead.
    void setProgram(const QString& path) { m_program = path; }
    /// A variable of its environment.
    void setVariable(const QString& name, const QString& value);
    /// A path in its home.
    [[nodiscard]] QString path(const QString& name) const { return m_home.filePath(name); }
    [[nodiscard]] QString cachePath() const { return path(QStringLiteral("cache/MarvikTools")); }
    [[nodiscard]] QString configPath() const { return path(QStringLiteral("config/MarvikTools")); }

    [[nodiscard]] static QString program();
    /// For tools of the system: without the preloaded libraries of the virtual camera, because a
    /// sanitizer among them would check the tool.
    [[nodiscard]] static QProcessEnvironment toolEnvironment();

private:
    QTemporaryDir m_home;
    QString m_program = program();
    QProcessEnvironment m_environment;
};
