#include "tarnroles.h"
#include "tarnword.h"

#include "cmpath.h"
#include "tarnmediadata.h"
#include "tarnvalue.h"

TARN_WORD(TarnRolesType::Action, "action")
TARN_WORD(TarnRolesType::Audio, "audio")
TARN_WORD(TarnRolesType::Container, "container")
TARN_WORD(TarnRolesType::Text, "text")
TARN_WORD(TarnRolesType::Value, "value")
TARN_WORD(TarnRolesContainerType::Album, "album")
TARN_WORD(TarnRolesContainerType::Context, "context")
TARN_WORD(TarnRolesContainerType::DynamicContent, "dynamicContent")
TARN_WORD(TarnRolesContainerType::None, "none")
TARN_WORD(TarnRolesContainerType::Playlist, "playlist")
TARN_WORD(TarnRolesAudioType::AudioBroadcast, "audioBroadcast")
TARN_WORD(TarnRolesAudioType::AudioTrack, "audioTrack")
TARN_WORD(TarnRolesImageType::Cover, "cover")
TARN_WORD(TarnRolesImageType::Icon, "icon")
TARN_WORD(TarnPermission::Default_, "default")

TARN_WORD(TarnRoles::Activate, "activate")
TARN_WORD(TarnRoles::AudioType, "audioType")
TARN_WORD(TarnRoles::ContainerPlayable, "containerPlayable")
TARN_WORD(TarnRoles::ContainerType, "containerType")
TARN_WORD(TarnRoles::Context, "context")
TARN_WORD(TarnRoles::Description, "description")
TARN_WORD(TarnRoles::Disabled, "disabled")
TARN_WORD(TarnRoles::Edit, "edit")
TARN_WORD(TarnRoles::Icon, "icon")
TARN_WORD(TarnRoles::Id, "id")
TARN_WORD(TarnRoles::ImageType, "imageType")
TARN_WORD(TarnRoles::LongDescription, "longDescription")
TARN_WORD(TarnRoles::MediaData, "mediaData")
TARN_WORD(TarnRoles::Path, "path")
TARN_WORD(TarnRoles::Permission, "permission")
TARN_WORD(TarnRoles::Preferred, "preferred")
TARN_WORD(TarnRoles::ReadOnly, "readOnly")
TARN_WORD(TarnRoles::ReleaseDate, "releaseDate")
TARN_WORD(TarnRoles::Title, "title")
TARN_WORD(TarnRoles::Type, "type")
TARN_WORD(TarnRoles::Value, "value")

CMPath TarnRoles::path() const
{
    return CMPath::fromEncoded(value(Path()).toString());
}

TarnMediaData TarnRoles::mediaData() const
{
    return TarnMediaData(value(MediaData()).toHash());
}

TrString TarnRoles::title() const
{
    QVariant const v = value(Title());
    return v.canConvert<TrString>() && v.userType() == qMetaTypeId<TrString>() ? v.value<TrString>()
                                                                                : TrString(v.toString());
}

TarnRoles& TarnRoles::setPath(CMPath const& path)
{
    insert(Path(), path.toEncoded());
    return *this;
}

TarnRoles& TarnRoles::setMediaData(TarnMediaData const& m)
{
    insert(MediaData(), m.__variant());
    return *this;
}

TarnRoles& TarnRoles::setValue(TarnValue const& v)
{
    insert(Value(), v.__variant());
    return *this;
}
