#include "sessionrows.h"
#include "jsonvalue.h"

#include "cmglobal.h"

#include <QRegularExpression>

QJsonObject presentRoles(QStringList const& roles, QList<QVariant> const& values)
{
    QJsonObject object;
    auto const hash = CMGlobal::rolesValuesToHash(roles, values);
    for (auto it = hash.cbegin(); it != hash.cend(); ++it) {
        if (it.value().isValid())
            object.insert(it.key(), jsonFromVariant(it.value()));
    }
    return object;
}

QJsonArray rowObjects(QStringList const& roles, QVariantList const& rows)
{
    QJsonArray objects;
    for (QVariant const& row : rows)
        objects << presentRoles(roles, row.toList());
    return objects;
}

bool isRowNumber(QString const& text)
{
    static QRegularExpression const number(QStringLiteral("^-?[0-9]+$"));
    return number.match(text).hasMatch();
}
