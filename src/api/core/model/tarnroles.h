#pragma once

#include "tarnhash.h"
#include "trstring.h"

class CMPath;
class TarnMediaData;
class TarnValue;

// Values of the Type, ContainerType, AudioType and ImageType roles. The
// named ones are words; the platform also has numbered kinds (dialog
// containers, option rows), so a role value is a variant holding either.
namespace TarnRolesType {
using Enum = QVariant;
QString const& Action();
QString const& Audio();
QString const& Container();
QString const& Text();
QString const& Value();
}
namespace TarnRolesContainerType {
using Enum = QVariant;
QString const& Album();
QString const& Context();
QString const& DynamicContent();
QString const& None();
QString const& Playlist();
}
namespace TarnRolesAudioType {
using Enum = QVariant;
QString const& AudioBroadcast();
QString const& AudioTrack();
}
namespace TarnRolesImageType {
using Enum = QVariant;
QString const& Cover();
QString const& Icon();
}
namespace TarnPermission {
QString const& Default_();
}

// The roles of one row or node.
class TarnRoles : public TarnHash
{
public:
    using TarnHash::TarnHash;
    TarnRoles() = default;
    TarnRoles(TarnHash const& h) : TarnHash(h) {}

    static QString const& Activate();
    static QString const& AudioType();
    static QString const& ContainerPlayable();
    static QString const& ContainerType();
    static QString const& Context();
    static QString const& Description();
    static QString const& Disabled();
    static QString const& Edit();
    static QString const& Icon();
    static QString const& Id();
    static QString const& ImageType();
    static QString const& LongDescription();
    static QString const& MediaData();
    static QString const& Path();
    static QString const& Permission();
    static QString const& Preferred();
    static QString const& ReadOnly();
    static QString const& ReleaseDate();
    static QString const& Title();
    static QString const& Type();
    static QString const& Value();

    QString id() const { return value(Id()).toString(); }
    CMPath path() const;
    TarnMediaData mediaData() const;
    QVariant type() const { return value(Type()); }
    TrString title() const;

    TarnRoles& setId(QString const& id) { insert(Id(), id); return *this; }
    TarnRoles& setPath(CMPath const& path);
    TarnRoles& setTitle(TrString const& title) { insert(Title(), QVariant(title)); return *this; }
    TarnRoles& setDescription(TrString const& d) { insert(Description(), QVariant(d)); return *this; }
    TarnRoles& setLongDescription(TrString const& d) { insert(LongDescription(), QVariant(d)); return *this; }
    TarnRoles& setIcon(QString const& icon) { insert(Icon(), icon); return *this; }
    TarnRoles& setType(TarnRolesType::Enum const& t) { insert(Type(), t); return *this; }
    TarnRoles& setContainerType(TarnRolesContainerType::Enum const& t) { insert(ContainerType(), t); return *this; }
    TarnRoles& setAudioType(TarnRolesAudioType::Enum const& t) { insert(AudioType(), t); return *this; }
    TarnRoles& setImageType(TarnRolesImageType::Enum const& t) { insert(ImageType(), t); return *this; }
    TarnRoles& setMediaData(TarnMediaData const& m);
    TarnRoles& setContext(TarnRoles const& c) { insert(Context(), c.__variant()); return *this; }
    TarnRoles& setValue(TarnValue const& v);
    TarnRoles& setDisabled(bool d) { insert(Disabled(), d); return *this; }
};

Q_DECLARE_METATYPE(TarnRoles)
