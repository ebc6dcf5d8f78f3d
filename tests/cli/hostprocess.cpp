#include "hostprocess.h"

#include <QJsonArray>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QProcess>
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
    QProcess process;
    process.start(QStringLiteral(TARN_HOST_BINARY), arguments);
    HostRun run;
    if (!process.waitForStarted(10000)) {
        ADD_FAILURE() << "tarn-host did not start";
        return run;
    }
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        ADD_FAILURE() << "tarn-host did not end: " << arguments.join(' ').toStdString();
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

RunningHost::RunningHost(QStringList const& arguments)
{
    mProcess.start(QStringLiteral(TARN_HOST_BINARY), arguments);
    if (!mProcess.waitForStarted(10000))
        ADD_FAILURE() << "tarn-host did not start";
    mProcess.closeWriteChannel();
}

RunningHost::~RunningHost()
{
    if (mProcess.state() == QProcess::NotRunning)
        return;
    mProcess.kill();
    mProcess.waitForFinished();
}

QString RunningHost::readLine(int ms)
{
    QElapsedTimer clock;
    clock.start();
    while (!mProcess.canReadLine()) {
        qint64 const left = ms - clock.elapsed();
        if (left <= 0 || !mProcess.waitForReadyRead(int(left)))
            return QString();
    }
    QString const line = QString::fromUtf8(mProcess.readLine());
    mRead += line;
    return line.trimmed();
}

HostRun RunningHost::finish(int ms)
{
    HostRun run;
    if (!mProcess.waitForFinished(ms)) {
        ADD_FAILURE() << "tarn-host did not end";
        mProcess.kill();
        mProcess.waitForFinished();
    }
    run.exitCode = mProcess.exitStatus() == QProcess::NormalExit ? mProcess.exitCode() : -1;
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
