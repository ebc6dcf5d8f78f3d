#include "hostprocess.h"
#include "program.h"
#include "testprograms.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <gtest/gtest.h>

QList<QJsonObject> HostRun::objects() const
{
    QList<QJsonObject> objects;
    for (QString const& line : out.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        QJsonParseError error{};
        QJsonDocument const doc = QJsonDocument::fromJson(line.toUtf8(), &error);
        EXPECT_TRUE(doc.isObject()) << "not a JSON object: " << line.toStdString();
        objects << doc.object();
    }
    return objects;
}

QStringList HostRun::toolErrors() const
{
    return err.split(QLatin1Char('\n')).filter(QRegularExpression(QStringLiteral("^tarn-host: ")));
}

HostRun runHost(QStringList const& arguments, QByteArray const& input)
{
    ChildProcess process(programCommand(QStringLiteral(TARN_HOST_BINARY), arguments));
    HostRun run;
    if (!process.isStarted()) {
        ADD_FAILURE() << "tarn-host did not start";
        return run;
    }
    process.write(input);
    process.closeInput();
    if (!process.waitForFinished(60000)) {
        process.kill();
        ADD_FAILURE() << "tarn-host did not end: " << arguments.join(' ').toStdString();
    }
    run.exitCode = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

RunningHost::RunningHost(QStringList const& arguments)
    : mProcess(programCommand(QStringLiteral(TARN_HOST_BINARY), arguments))
{
    if (!mProcess.isStarted())
        ADD_FAILURE() << "tarn-host did not start";
    mProcess.closeInput();
}

QString RunningHost::readLine(int ms)
{
    QString const line = QString::fromUtf8(mProcess.readLine(ms));
    mRead += line;
    return line.trimmed();
}

HostRun RunningHost::finish(int ms)
{
    HostRun run;
    if (!mProcess.waitForFinished(ms)) {
        ADD_FAILURE() << "tarn-host did not end";
        mProcess.kill();
    }
    run.exitCode = mProcess.exitCode();
    run.out = mRead + QString::fromUtf8(mProcess.readAllStandardOutput());
    run.err = QString::fromUtf8(mProcess.readAllStandardError());
    return run;
}

QStringList titlesOf(QJsonObject const& listing)
{
    QStringList titles;
    for (auto const& row : listing.value("rows").toArray())
        titles << row.toObject().value("title").toString();
    return titles;
}

QStringList pathColumn(QString const& table)
{
    QStringList const lines = table.split(QLatin1Char('\n'));
    int const header = lines.indexOf(QRegularExpression(QStringLiteral("^#\\s+TITLE\\s+(TYPE|KIND)\\s+(VALUE\\s+)?PATH$")));
    if (header < 0)
        return {};
    int const column = lines[header].indexOf(QStringLiteral("PATH"));
    QStringList cells;
    for (int i = header + 1; i < lines.size() && !lines[i].startsWith(QStringLiteral("rows ")); ++i)
        cells << lines[i].mid(column);
    return cells;
}
