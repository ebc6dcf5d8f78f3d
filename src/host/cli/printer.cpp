#include "printer.h"
#include "jsonvalue.h"
#include "tablewriter.h"

#include "tarndialogtypes.h"
#include "tarnroles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <cstdio>

namespace {

int const kTitleWidth = 40;
int const kValueWidth = 30;

// The numbered row kinds of dialogs, by the names the platform gives them.
QString rowTypeText(QJsonValue const& type)
{
    if (type.isDouble()) {
        switch (type.toInt()) {
        case TarnDialogRowType::Option:
            return QStringLiteral("option");
        case TarnDialogRowType::Link:
            return QStringLiteral("link");
        case TarnDialogRowType::OAuth2Login:
            return QStringLiteral("login page");
        default:
            break;
        }
    }
    return displayText(type);
}

QString typeText(QJsonObject const& row)
{
    QString text = rowTypeText(row.value(TarnRoles::Type()));
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

QString optionTitle(QJsonArray const& options, QString const& value)
{
    for (auto const& o : options) {
        if (o.toObject().value("value").toString() == value)
            return o.toObject().value("title").toString();
    }
    return QString();
}

// A field as a person fills it in: its kind with its rules, and its value,
// a password's hidden.
QStringList fieldCells(QJsonObject const& f)
{
    QString const kind = f.value("kind").toString();
    QString const value = f.value("value").toString();
    QString kindText = kind;
    QString valueText = value;
    if (kind == QLatin1String("select")) {
        QJsonArray const options = f.value("options").toArray();
        QStringList choices;
        for (auto const& o : options) {
            QJsonObject const option = o.toObject();
            choices << option.value("value").toString() + QStringLiteral(" = ") + option.value("title").toString();
        }
        if (!choices.isEmpty())
            kindText += QStringLiteral(": ") + choices.join(QStringLiteral(", "));
        QString const chosen = optionTitle(options, value);
        if (!chosen.isEmpty())
            valueText += QStringLiteral(" (") + chosen + QLatin1Char(')');
    } else if (f.value("password").toBool() && !value.isEmpty()) {
        // Fixed, so that not even the length shows.
        valueText = QStringLiteral("********");
    }
    if (f.value("required").toBool())
        kindText += QStringLiteral(", required");
    return {kindText, valueText};
}

} // namespace

Printer::Printer(bool json, PathText const& paths) : mJson(json), mPaths(paths), mOut(stdout), mErr(stderr) {}

Printer::Printer(Sink sink, PathText const& paths)
    : mJson(true), mSink(std::move(sink)), mPaths(paths), mOut(stdout), mErr(stderr)
{
}

void Printer::emitJson(QJsonObject const& object)
{
    if (mSink) {
        mSink(object);
        return;
    }
    mOut << QJsonDocument(object).toJson(QJsonDocument::Compact) << '\n';
    mOut.flush();
}

void Printer::print(Kind kind, QJsonObject const& body)
{
    if (mJson) {
        emitJson(body);
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
    case Kind::Set:
        set(body);
        break;
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
        mOut << "played " << body.value("uri").toString() << '\n';
        break;
    case Kind::Program: {
        // The tracks were said as they started.
        int const count = body.value("tracks").toArray().size();
        mOut << "played " << count << (count == 1 ? " track of " : " tracks of ") << body.value("title").toString();
        if (body.value("state").toString() != QLatin1String("stopped"))
            mOut << ", which plays on (player status, next, pause, like, stop)";
        mOut << '\n';
        break;
    }
    case Kind::Player:
        player(body);
        break;
    case Kind::Login:
        login(body);
        break;
    }
    mOut.flush();
}

void Printer::listing(QJsonObject const& body)
{
    if (body.contains("field")) {
        options(body);
        return;
    }
    QString const path = mPaths.shortText(CMPath::fromEncoded(body.value("path").toString()));
    QJsonObject const own = body.value("roles").toObject();
    QJsonObject const dialog = body.value("dialog").toObject();
    QString const title = own.value(TarnRoles::Title()).toString();
    int const count = body.value("count").toInt();
    QString const kind = dialog.value("kind").toString();
    mOut << (title.isEmpty() ? path : title) << " (" << (kind.isEmpty() ? QString() : kind + QStringLiteral(", "))
         << count << (count == 1 ? " row)" : " rows)") << '\n';
    // What a person reads above a list; ids and media data are the
    // module's business (get and --json show them). A message's text is
    // often its description too, and is said once.
    QString const description = displayText(own.value(TarnRoles::Description()));
    QString const text = dialog.value("text").toString();
    if (!description.isEmpty() && description != text)
        mOut << "  " << description << '\n';
    if (body.contains("redirect")) {
        QString const target = mPaths.shortText(CMPath::fromEncoded(body.value("redirect").toString()));
        mOut << (body.value("rows").toArray().isEmpty() && count == 0 ? "redirect to " : "redirected to ")
             << target << '\n';
    }
    if (body.contains("dialog")) {
        dialogRows(body);
        return;
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
        // A login's value holds the ways to log in, which oauth N takes.
        bool const login = row.value(TarnRoles::Type()).toInt() == TarnDialogRowType::OAuth2Login;
        if (hasValues)
            cells << (login ? QString() : elide(valueText(row.value(TarnRoles::Value())), kValueWidth));
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

void Printer::set(QJsonObject const& body)
{
    // A press says where the dialog sends the user, and shows it.
    if (!body.contains("goto") && !body.contains("closed")) {
        QString const reply = displayText(body.value("reply"));
        mOut << (reply.isEmpty() ? QStringLiteral("OK") : QStringLiteral("OK: ") + reply) << '\n';
        return;
    }
    mOut << "OK" << '\n';
    destination(body);
}

void Printer::destination(QJsonObject const& body)
{
    for (auto const& closed : body.value("closed").toArray()) {
        QString const path = closed.toString();
        mOut << "closed "
             << (path.isEmpty() ? QStringLiteral("the dialog") : mPaths.shortText(CMPath::fromEncoded(path))) << '\n';
    }
    if (body.contains("goto"))
        mOut << "go to " << mPaths.shortText(CMPath::fromEncoded(body.value("goto").toString())) << '\n';
    QJsonObject const shown = body.value("listing").toObject();
    if (!shown.isEmpty() && !shown.contains("error"))
        listing(shown);
}

void Printer::dialogRows(QJsonObject const& body)
{
    QJsonObject const dialog = body.value("dialog").toObject();
    for (QString const& line : dialog.value("text").toString().split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        mOut << "  " << line << '\n';

    // Texts are said above; every other row keeps its number, for set N.
    QHash<int, QStringList> cells;
    auto const path = [this](QJsonValue const& p) {
        QString const text = p.toString();
        return text.isEmpty() ? QString() : mPaths.shortText(CMPath::fromEncoded(text));
    };
    for (auto const& f : dialog.value("fields").toArray()) {
        QJsonObject const o = f.toObject();
        cells.insert(o.value("row").toInt(), QStringList{o.value("title").toString()} + fieldCells(o)
                                                 + QStringList{path(o.value("path"))});
    }
    // A menu's buttons are the actions it offers.
    QString const button = dialog.value("kind").toString() == QLatin1String("menu") ? QStringLiteral("action")
                                                                                     : QStringLiteral("button");
    for (auto const& b : dialog.value("buttons").toArray()) {
        QJsonObject const o = b.toObject();
        cells.insert(o.value("row").toInt(), {o.value("title").toString(), button, QString(), path(o.value("path"))});
    }
    for (auto const& l : dialog.value("lists").toArray()) {
        QJsonObject const o = l.toObject();
        cells.insert(o.value("row").toInt(), {o.value("title").toString(), "list", QString(), path(o.value("path"))});
    }
    for (auto const& l : dialog.value("links").toArray()) {
        QJsonObject const o = l.toObject();
        cells.insert(o.value("row").toInt(),
                     {o.value("title").toString(), "link", o.value("url").toString(), QString()});
    }
    for (auto const& l : dialog.value("logins").toArray()) {
        QJsonObject const o = l.toObject();
        cells.insert(o.value("row").toInt(),
                     {o.value("title").toString(), "login page", QString(), path(o.value("path"))});
    }
    for (auto const& c : dialog.value("options").toArray()) {
        QJsonObject const o = c.toObject();
        cells.insert(o.value("row").toInt(),
                     {o.value("title").toString(), "option", o.value("value").toString(), QString()});
    }

    QJsonArray const rows = body.value("rows").toArray();
    int const from = body.value("from").toInt();
    QVector<QStringList> lines;
    bool hasValues = false;
    for (int i = 0; i < rows.size(); ++i) {
        QJsonObject const row = rows[i].toObject();
        if (row.value(TarnRoles::Type()).toString() == TarnRolesType::Text() || !row.contains(TarnRoles::Type()))
            continue;
        QStringList line = cells.value(from + i);
        if (line.isEmpty())
            line = QStringList{displayText(row.value(TarnRoles::Title())), typeText(row),
                               valueText(row.value(TarnRoles::Value())), path(row.value(TarnRoles::Path()))};
        line[0] = elide(line[0], kTitleWidth);
        hasValues = hasValues || !line[2].isEmpty();
        lines << QStringList{QString::number(from + i)} + line;
    }
    // A message's buttons have no values; the column would stand empty.
    TableWriter table(hasValues ? QStringList{"#", "TITLE", "KIND", "VALUE", "PATH"}
                                : QStringList{"#", "TITLE", "KIND", "PATH"});
    for (QStringList line : lines) {
        if (!hasValues)
            line.removeAt(3);
        table.addRow(line);
    }
    if (!lines.isEmpty())
        mOut << table.text();
    if (!rows.isEmpty())
        mOut << "rows " << from << "-" << from + rows.size() - 1 << " of " << body.value("count").toInt() << '\n';
}

void Printer::options(QJsonObject const& body)
{
    QJsonObject const field = body.value("field").toObject();
    QJsonArray const options = body.value("dialog").toObject().value("options").toArray();
    QString const chosen = field.value("value").toString();
    mOut << "Options of " << field.value("title").toString() << " (" << options.size()
         << (options.size() == 1 ? " option)" : " options)") << '\n';
    TableWriter table({" ", "VALUE", "OPTION"});
    for (auto const& o : options) {
        QString const value = o.toObject().value("value").toString();
        table.addRow({value == chosen ? QStringLiteral("*") : QString(), value, o.toObject().value("title").toString()});
    }
    mOut << table.text();
    QString const name = field.contains("row") ? QString::number(field.value("row").toInt())
                                               : mPaths.shortText(CMPath::fromEncoded(field.value("path").toString()));
    mOut << "* chosen; choose another with: set " << name << " value '\"VALUE\"'" << '\n';
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

void Printer::player(QJsonObject const& body)
{
    QString const command = body.value("command").toString();
    QJsonObject const track = body.value("track").toObject();
    QString const title = track.value("title").toString();
    if (command == QLatin1String("status")) {
        QString const artist = track.value("artist").toString();
        mOut << body.value("state").toString();
        if (!title.isEmpty())
            mOut << "  " << title << (artist.isEmpty() ? QString() : QStringLiteral(" - ") + artist);
        mOut << '\n';
        TableWriter table;
        auto const add = [&table](QString const& name, QString const& value) {
            if (!value.isEmpty())
                table.addRow({QStringLiteral("  ") + name, value});
        };
        add(QStringLiteral("stream"), track.value("uri").toString());
        qint64 const seconds = qint64(body.value("positionMs").toDouble()) / 1000;
        add(QStringLiteral("position"),
            QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0')));
        add(QStringLiteral("rating"), track.value("rating").toString());
        QStringList controls;
        for (auto const& c : body.value("controls").toArray())
            controls << c.toString();
        add(QStringLiteral("controls"), controls.join(QStringLiteral(", ")));
        mOut << table.text();
    } else if (body.contains("reply")) {
        QJsonObject const reply = body.value("reply").toObject();
        QString const text = reply.value("description").toString();
        mOut << reply.value("title").toString() << (text.isEmpty() ? QString() : QStringLiteral(": ") + text) << '\n';
        if (body.contains("rating"))
            mOut << "rating: " << body.value("rating").toString() << '\n';
    } else if (body.value("restarted").toBool()) {
        mOut << "back to the start of " << title << '\n';
    } else if (!body.contains("track")) {
        // A new track was said as it started.
        mOut << body.value("state").toString() << '\n';
    }
}

void Printer::login(QJsonObject const& body)
{
    if (!body.contains("returned")) {
        mOut << "log in on this page: " << body.value("url").toString() << '\n';
        return;
    }
    mOut << "the browser came back: the login has ended" << '\n';
    destination(body);
}

void Printer::trackStarted(int number, QJsonObject const& track)
{
    if (mJson)
        return;
    QString const artist = track.value("artist").toString();
    mOut << number << "  " << track.value("title").toString()
         << (artist.isEmpty() ? QString() : QStringLiteral(" - ") + artist) << '\n';
    mOut << QString(QString::number(number).size() + 2, QLatin1Char(' ')) << track.value("uri").toString() << '\n';
    mOut.flush();
}

void Printer::loginPage(QString const& url, QString const& back)
{
    if (mJson) {
        emitJson(QJsonObject{{"url", url}});
    } else {
        mOut << "log in on this page: " << url << '\n';
        mOut << "waiting for the browser to come back to " << back << '\n';
    }
    mOut.flush();
}

void Printer::error(QString const& name, QString const& message, QJsonObject const& extra)
{
    if (mJson) {
        QJsonObject e{{"name", name}, {"message", message}};
        for (auto it = extra.begin(); it != extra.end(); ++it)
            e.insert(it.key(), it.value());
        emitJson(QJsonObject{{"error", e}});
    }
    errorLine(message);
}

void Printer::errorLine(QString const& message)
{
    mErr << "tarn-host: " << message << '\n';
    mErr.flush();
}

void Printer::notification(QString const& text)
{
    std::fprintf(stderr, "notification: %s\n", qPrintable(text));
    std::fflush(stderr);
}
