#include "dialogview.h"
#include "jsonvalue.h"

#include "tarndialogtypes.h"
#include "tarnedit.h"
#include "tarnoauth2.h"
#include "tarnroles.h"
#include "tarnvalue.h"

namespace {

bool hasType(QJsonObject const& row, QString const& name)
{
    return row.value(TarnRoles::Type()).toString() == name;
}

bool hasType(QJsonObject const& row, int number)
{
    QJsonValue const type = row.value(TarnRoles::Type());
    return type.isDouble() && type.toInt() == number;
}

QString title(QJsonObject const& row)
{
    return displayText(row.value(TarnRoles::Title()));
}

// Roles hold the platform's records; the JSON form is read back into them,
// so that their accessors say what a key means.
template <typename Record>
Record record(QJsonValue const& value)
{
    QVariant variant;
    variantFromJsonText(displayText(value), &variant);
    return Record(TarnHash::toHash(variant));
}

QString stringOf(QJsonObject const& row)
{
    return record<TarnValue>(row.value(TarnRoles::Value())).string_();
}

TarnEdit editOf(QJsonObject const& row)
{
    return record<TarnEdit>(row.value(TarnRoles::Edit()));
}

QJsonObject field(QJsonObject const& row, int number, QHash<QString, QJsonArray> const& optionsByList)
{
    TarnEdit const edit = editOf(row);
    QJsonObject f{{"row", number},
                  {"title", title(row)},
                  {"path", row.value(TarnRoles::Path())},
                  {"value", stringOf(row)},
                  {"required", edit.minLength() >= 1},
                  {"password", edit.password()}};
    if (edit.type() == TarnEditType::Select) {
        f.insert("kind", QStringLiteral("select"));
        f.insert("options", optionsByList.value(edit.enumPath().toEncoded()));
    } else {
        f.insert("kind", edit.password() ? QStringLiteral("password") : QStringLiteral("text"));
    }
    return f;
}

// A text says its title and, below it, a description of its own: the
// information a menu shows above its actions has both.
QStringList textLines(QJsonObject const& row)
{
    QStringList lines;
    for (QString const& line : {title(row), displayText(row.value(TarnRoles::Description()))}) {
        if (!line.trimmed().isEmpty() && !lines.contains(line))
            lines << line;
    }
    return lines;
}

QString linkUrl(QJsonObject const& row)
{
    QJsonArray const resources = row.value(TarnRoles::MediaData()).toObject().value("resources").toArray();
    return resources.first().toObject().value("uri").toString();
}

} // namespace

namespace DialogView {

bool isDialog(QJsonObject const& ownRoles)
{
    QJsonValue const type = ownRoles.value(TarnRoles::ContainerType());
    return type.isDouble() && type.toInt() == TarnDialogContainerType::Dialog;
}

QVector<CMPath> optionLists(QJsonArray const& rows)
{
    QVector<CMPath> lists;
    for (auto const& r : rows) {
        QJsonObject const row = r.toObject();
        if (!hasType(row, TarnRolesType::Value()))
            continue;
        TarnEdit const edit = editOf(row);
        if (edit.type() == TarnEditType::Select && !edit.enumPath().isEmpty())
            lists << edit.enumPath();
    }
    return lists;
}

QJsonArray options(QJsonArray const& optionRows)
{
    QJsonArray out;
    for (auto const& r : optionRows) {
        QJsonObject const row = r.toObject();
        if (row.contains(TarnRoles::Value()))
            out << QJsonObject{{"value", stringOf(row)}, {"title", title(row)}};
    }
    return out;
}

QJsonObject describe(QJsonArray const& rows, int from, QHash<QString, QJsonArray> const& optionsByList)
{
    QStringList text;
    QJsonArray fields;
    QJsonArray buttons;
    QJsonArray links;
    QJsonArray logins;
    QJsonArray choices;
    QJsonArray lists;
    int number = from;
    for (auto const& r : rows) {
        QJsonObject const row = r.toObject();
        int const n = number++;
        // A row of a dialog that is of no kind only says something, as the
        // one row of an action's answer does.
        if (hasType(row, TarnRolesType::Text()) || !row.contains(TarnRoles::Type()))
            text << textLines(row);
        else if (hasType(row, TarnRolesType::Value()))
            fields << field(row, n, optionsByList);
        else if (hasType(row, TarnRolesType::Action()))
            buttons << QJsonObject{{"row", n}, {"title", title(row)}, {"path", row.value(TarnRoles::Path())}};
        else if (hasType(row, TarnDialogRowType::Link))
            links << QJsonObject{{"row", n}, {"title", title(row)}, {"url", linkUrl(row)}};
        else if (hasType(row, TarnDialogRowType::OAuth2Login))
            logins << QJsonObject{{"row", n}, {"title", title(row)}, {"path", actionPath(row).toEncoded()}};
        else if (hasType(row, TarnDialogRowType::Option))
            choices << QJsonObject{{"row", n}, {"title", title(row)}, {"value", stringOf(row)}};
        else if (hasType(row, TarnRolesType::Container()))
            lists << QJsonObject{{"row", n}, {"title", title(row)}, {"path", row.value(TarnRoles::Path())}};
    }

    QJsonObject dialog;
    dialog.insert("kind", !text.isEmpty()      ? QStringLiteral("message")
                          : !choices.isEmpty() ? QStringLiteral("options")
                                               : QStringLiteral("form"));
    if (!text.isEmpty())
        dialog.insert("text", text.join(QLatin1Char('\n')));
    auto const put = [&dialog](char const* key, QJsonArray const& list) {
        if (!list.isEmpty())
            dialog.insert(key, list);
    };
    put("fields", fields);
    put("buttons", buttons);
    put("links", links);
    put("logins", logins);
    put("options", choices);
    put("lists", lists);
    return dialog;
}

CMPath actionPath(QJsonObject const& row)
{
    return loginOf(row).browserAuthFlowPath();
}

bool isLogin(QJsonObject const& row)
{
    return hasType(row, TarnDialogRowType::OAuth2Login);
}

TarnOAuth2Info loginOf(QJsonObject const& row)
{
    if (!isLogin(row))
        return TarnOAuth2Info();
    return record<TarnValue>(row.value(TarnRoles::Value())).oauth2Info();
}

} // namespace DialogView
