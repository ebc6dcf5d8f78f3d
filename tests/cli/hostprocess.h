#pragma once

#include "childprocess.h"
#include "patience.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

// One finished run of tarn-host.
struct HostRun
{
    int exitCode = -1;
    QString out;
    QString err;

    // Standard output read as one JSON object per line; a line that is no
    // object fails the calling test.
    QList<QJsonObject> objects() const;
    // Lines of standard error the tool wrote itself, not the log's.
    QStringList toolErrors() const;
};

// Runs tarn-host with the arguments, feeding input to its standard input,
// and waits for it to end.
HostRun runHost(QStringList const& arguments, QByteArray const& input = QByteArray());

// tarn-host running while the test plays a part of its own, as a browser's:
// its output is read line by line as it comes.
class RunningHost
{
public:
    explicit RunningHost(QStringList const& arguments);

    // The next line of standard output; empty when none came within ms.
    QString readLine(int ms = kPatienceMs);
    // Waits for the end; out holds every line, those read before too.
    HostRun finish(int ms = 60000);

private:
    ChildProcess mProcess;
    QString mRead;
};

// The titles of a listing's rows.
QStringList titlesOf(QJsonObject const& listing);

// The cells of a table's PATH column, as a person would copy them.
QStringList pathColumn(QString const& table);
