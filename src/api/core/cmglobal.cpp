#include "cmglobal.h"
#include "tarnroles.h"

QHash<QString, QVariant> CMGlobal::rolesValuesToHash(QStringList const& roles, QList<QVariant> const& values)
{
    QHash<QString, QVariant> hash;
    for (int i = 0; i < roles.size(); ++i)
        hash.insert(roles[i], i < values.size() ? values[i] : QVariant());
    return hash;
}

QStringList CMAllRoles()
{
    static QStringList const roles{
        TarnRoles::Activate(), TarnRoles::AudioType(), TarnRoles::ContainerPlayable(),
        TarnRoles::ContainerType(), TarnRoles::Context(), TarnRoles::Description(),
        TarnRoles::Disabled(), TarnRoles::Edit(), TarnRoles::Icon(), TarnRoles::Id(),
        TarnRoles::ImageType(), TarnRoles::LongDescription(), TarnRoles::MediaData(),
        TarnRoles::Path(), TarnRoles::Permission(), TarnRoles::Preferred(), TarnRoles::ReadOnly(),
        TarnRoles::ReleaseDate(), TarnRoles::Title(), TarnRoles::Type(), TarnRoles::Value(),
    };
    return roles;
}
