#include "printer.h"
#include "jsonvalue.h"
#include "tablewriter.h"

#include "tarnroles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <cstdio>

namespace {

int const kTitleWidth = 40;
int const kValueWidth = 30;

QString typeText(QJsonObject const& row)
{
    QString text = displayText(row.value(TarnRoles::Type()));
    for (QString const& sub : {TarnRoles::ContainerType(), TarnRoles::AudioType()}) {
        QString const s = displayText(row.value(sub));
        if (!s.isEmpty() && s != QLatin1String("none"))
            text += QLatin1Char('/') + s;
    }
    return text;
}

// A platform value holds one typed field; show the field, not the record.
QString valueText(QJsonValue const& value)
{
    QJsonObject const o = value.toObject();
    if (value.isObject() && o.size() == 1)
        return displayText(o.begin().value());
    return displayText(value);
}

} // namespace

Printer::Printer(bool json, PathText const& paths) : mJson(json), mPaths(paths), mOut(stdout), mErr(stderr) {}

void Printer::print(Kind kind, QJsonObject const& body)
{
    if (mJson) {
        mOut << QJsonDocument(body).toJson(QJsonDocument::Compact) << '\n';
        mOut.flush();
        return;
    }
    QString const path = mPaths.shortText(CMPath::fromEncoded(body.value("path").toString()));
    switch (kind) {
    case Kind::Listing:
        listing(body);
        break;
    case Kind::Data:
        data(body);
        break;
    case Kind::Set: {
        QString const reply = displayText(body.value("reply"));
        mOut << (reply.isEmpty() ? QStringLiteral("OK") : QStringLiteral("OK: ") + reply) << '\n';
        break;
    }
    case Kind::Path:
        mOut << path << '\n';
        break;
    case Kind::Change: {
        QJsonObject const c = body.value("change").toObject();
        mOut << "changed " << c.value("type").toString() << " rows " << c.value("from").toInt() << "-"
             << c.value("to").toInt() << " at " << path << '\n';
        break;
    }
    case Kind::Help:
        mOut << body.value("help").toString();
        break;
    case Kind::Play:
        for (auto const& step : body.value("steps").toArray())
            mOut << step.toString() << '\n';
        mOut << "playing " << body.value("uri").toString() << '\n';
        break;
    }
    mOut.flush();
}

void Printer::listing(QJsonObject const& body)
{
    QString const path = mPaths.shortText(CMPath::fromEncoded(body.value("path").toString()));
    QJsonObject const own = body.value("roles").toObject();
    QString const title = own.value(TarnRoles::Title()).toString();
    int const count = body.value("count").toInt();
    mOut << (title.isEmpty() ? path : title) << " (" << count << (count == 1 ? " row)" : " rows)") << '\n';
    // What a person reads above a list; ids and media data are the
    // module's business (get and --json show them).
    QString const description = displayText(own.value(TarnRoles::Description()));
    if (!description.isEmpty())
        mOut << "  " << description << '\n';
    if (body.contains("redirect")) {
        QString const target = mPaths.shortText(CMPath::fromEncoded(body.value("redirect").toString()));
        mOut << (body.value("rows").toArray().isEmpty() && count == 0 ? "redirect to " : "redirected to ")
             << target << '\n';
    }

    QJsonArray const rows = body.value("rows").toArray();
    bool hasValues = false;
    for (auto const& r : rows)
        hasValues = hasValues || r.toObject().contains(TarnRoles::Value());
    TableWriter table(hasValues ? QStringList{"#", "TITLE", "TYPE", "VALUE", "PATH"}
                                : QStringList{"#", "TITLE", "TYPE", "PATH"});
    int index = body.value("from").toInt();
    for (auto const& r : rows) {
        QJsonObject const row = r.toObject();
        QStringList cells{QString::number(index++), elide(displayText(row.value(TarnRoles::Title())), kTitleWidth),
                          typeText(row)};
        if (hasValues)
            cells << elide(valueText(row.value(TarnRoles::Value())), kValueWidth);
        QString const rowPath = row.value(TarnRoles::Path()).toString();
        // Whole, however long, so that it can be pasted back.
        cells << (rowPath.isEmpty() ? QString() : mPaths.shortText(CMPath::fromEncoded(rowPath)));
        table.addRow(cells);
    }
    if (!rows.isEmpty()) {
        mOut << table.text();
        mOut << "rows " << body.value("from").toInt() << "-" << index - 1 << " of " << count << '\n';
    }
}

void Printer::data(QJsonObject const& body)
{
    mOut << mPaths.shortText(CMPath::fromEncoded(body.value("path").toString())) << '\n';
    QJsonObject const roles = body.value("roles").toObject();
    TableWriter table;
    for (auto it = roles.begin(); it != roles.end(); ++it) {
        QString const text = it.key() == TarnRoles::Path()
                                 ? mPaths.shortText(CMPath::fromEncoded(it.value().toString()))
                                 : displayText(it.value());
        table.addRow({QStringLiteral("  ") + it.key() + QLatin1Char(':'), text});
    }
    mOut << table.text();
}

void Printer::error(QString const& name, QString const& message)
{
    if (mJson) {
        QJsonObject const e{{"name", name}, {"message", message}};
        mOut << QJsonDocument(QJsonObject{{"error", e}}).toJson(QJsonDocument::Compact) << '\n';
        mOut.flush();
    }
    mErr << "tarn-host: " << message << '\n';
    mErr.flush();
}

void Printer::notification(QString const& text)
{
    std::fprintf(stderr, "notification: %s\n", qPrintable(text));
    std::fflush(stderr);
}
