#include "playlogicbase.h"
#include "../tarnlog.h"

#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>

PlayLogicBase::PlayLogicBase(CMNodes* nodes, CMPath const& path) : CMNode(path)
{
    tarnPlayRegisterMetaTypes();
    setNodes(nodes);
    m_data.setState(TarnPlayLogicData::Stopped);
}

PlayLogicBase::~PlayLogicBase()
{
    if (PlayLogicInterface::playerInstance() == this)
        PlayLogicInterface::setPlayerInstance(nullptr);
}

CMError PlayLogicBase::notSupportedError(QString const& command)
{
    return CMError(QStringLiteral("notSupported"),
                   TrString(QStringLiteral("The play logic does not support \"%1\"").arg(command)));
}

void PlayLogicBase::setDataRequest(CMSetDataRequest const& request)
{
    using Command = void (PlayLogicBase::*)(CMSetDataRequest const&);
    static QHash<QString, Command> const commands{
        {TarnPlayLogicRoles::Play(), &PlayLogicBase::play},
        {TarnPlayLogicRoles::Stop(), &PlayLogicBase::stop},
        {TarnPlayLogicRoles::Pause(), &PlayLogicBase::pause},
        {TarnPlayLogicRoles::Previous(), &PlayLogicBase::previous},
        {TarnPlayLogicRoles::Next(), &PlayLogicBase::next},
        {TarnPlayLogicRoles::Like(), &PlayLogicBase::like},
        {TarnPlayLogicRoles::Dislike(), &PlayLogicBase::dislike},
        {TarnPlayLogicRoles::SeekTime(), &PlayLogicBase::seekTime},
        {TarnPlayLogicRoles::PlayMode(), &PlayLogicBase::changePlayMode},
    };
    Command const handler = commands.value(request.role());
    if (!handler) {
        request.reply().setError(CMError::invalidArgument(
            QStringLiteral("A play logic takes no command \"%1\"").arg(request.role()), request.role()));
        return;
    }
    LOG4CPLUS_DEBUG(logger, "Play logic " << path() << ": " << request.role().toStdString());
    (this->*handler)(request);
}

void PlayLogicBase::play(CMSetDataRequest const& request)
{
    playInternal(request, TarnPlayLogicPlayArgs(request.value().toHash()));
}

void PlayLogicBase::stop(CMSetDataRequest const& request)
{
    stopInternal(request);
}

void PlayLogicBase::pause(CMSetDataRequest const& request)
{
    pauseInternal(request);
}

void PlayLogicBase::previous(CMSetDataRequest const& request)
{
    previousInternal(request);
}

void PlayLogicBase::next(CMSetDataRequest const& request)
{
    nextInternal(request);
}

void PlayLogicBase::like(CMSetDataRequest const& request)
{
    likeInternal(request);
}

void PlayLogicBase::dislike(CMSetDataRequest const& request)
{
    dislikeInternal(request);
}

void PlayLogicBase::seekTime(CMSetDataRequest const& request)
{
    seekTimeInternal(request);
}

void PlayLogicBase::changePlayMode(CMSetDataRequest const& request)
{
    changePlayModeInternal(request);
}

QStringList PlayLogicBase::playModesSupported() const
{
    return {TarnPlayMode::Normal()};
}

void PlayLogicBase::playInternal(CMSetDataRequest const& request, TarnPlayLogicPlayArgs const&)
{
    request.reply().setError(notSupportedError(request.role()));
}

void PlayLogicBase::stopInternal(CMSetDataRequest const& request)
{
    // A stop without a reason comes from a client, that is from a person.
    int const reason = request.value().isValid() ? request.value().toInt() : int(TarnPlayLogicStopReason::User);
    setPlayTime(0);
    setData(stoppedData(reason == TarnPlayLogicStopReason::User ? TarnPlaylogicErrorName::TarnPlaylogicUserStop()
                                                                : QString()));
    request.reply().setValue(QVariant());
}

void PlayLogicBase::pauseInternal(CMSetDataRequest const& request)
{
    request.reply().setError(notSupportedError(request.role()));
}

void PlayLogicBase::previousInternal(CMSetDataRequest const& request)
{
    request.reply().setError(notSupportedError(request.role()));
}

void PlayLogicBase::nextInternal(CMSetDataRequest const& request)
{
    request.reply().setError(notSupportedError(request.role()));
}

void PlayLogicBase::seekTimeInternal(CMSetDataRequest const& request)
{
    request.reply().setError(notSupportedError(request.role()));
}

void PlayLogicBase::likeInternal(CMSetDataRequest const& request)
{
    request.reply().setError(notSupportedError(request.role()));
}

void PlayLogicBase::dislikeInternal(CMSetDataRequest const& request)
{
    request.reply().setError(notSupportedError(request.role()));
}

void PlayLogicBase::changePlayModeInternal(CMSetDataRequest const& request)
{
    QString const mode = request.value().toString();
    if (!playModesSupported().contains(mode)) {
        request.reply().setError(CMError::invalidArgument(
            QStringLiteral("The play logic does not support the play mode \"%1\"").arg(mode), mode));
        return;
    }
    TarnPlayLogicData changed = data();
    changed.insert(TarnPlayLogicDataKey::PlayMode(), mode);
    setData(changed);
    request.reply().setValue(QVariant());
}

TarnPlayLogicData PlayLogicBase::data() const
{
    std::lock_guard<std::mutex> lock(m_dataMutex);
    return m_data;
}

void PlayLogicBase::setData(TarnPlayLogicData const& data)
{
    {
        std::lock_guard<std::mutex> lock(m_dataMutex);
        if (m_data == data)
            return;
        m_data = data;
    }
    if (data.state() != TarnPlayLogicData::Stopped)
        PlayLogicInterface::setPlayerInstance(this);
    nodes()->subscribe()->changed(path(), CMSubscribe::RowsChangeReset(), -1, -1);
}

TarnPlayLogicData PlayLogicBase::playLogicEntries() const
{
    TarnPlayLogicData const current = data();
    TarnPlayLogicData entries;
    for (QString const& key :
         {TarnPlayLogicDataKey::Controls(), TarnPlayLogicDataKey::ContextPath(), TarnPlayLogicDataKey::PlayMode()})
        if (current.__contains(key))
            entries.insert(key, current.value(key));
    return entries;
}

TarnPlayLogicData PlayLogicBase::stoppedData(QString const& errorName) const
{
    TarnPlayLogicData const current = data();
    TarnPlayLogicData stopped;
    stopped.setState(TarnPlayLogicData::Stopped);
    if (current.__contains(TarnPlayLogicDataKey::PlayMode()))
        stopped.insert(TarnPlayLogicDataKey::PlayMode(), current.value(TarnPlayLogicDataKey::PlayMode()));
    if (!errorName.isEmpty())
        stopped.setError(errorName);
    return stopped;
}

TarnRoles PlayLogicBase::roles() const
{
    TarnRoles r = CMNode::roles();
    r.insert(TarnRoles::Value(), data().__variant());
    return r;
}

// A play logic has no rows; a listing of its path carries its roles, so that
// a client watching the path reads the data with the rows it asks again.
void PlayLogicBase::getRowsRequest(CMGetRowsRequest const& request)
{
    TarnRowsRoles answer;
    answer.setRows(QVariantList()).setRowsCount(0).setRoles(roles());
    request.reply().setValue(answer);
}

CMReply<QVariant> PlayLogicBase::command(QString const& role, QVariant const& value)
{
    CMSetDataRequest const request(path(), role, value);
    nodes()->request(request);
    return request.reply();
}

CMReply<QVariant> PlayLogicBase::pause()
{
    return command(TarnPlayLogicRoles::Pause(), QVariant());
}

CMReply<QVariant> PlayLogicBase::next()
{
    return command(TarnPlayLogicRoles::Next(), QVariant());
}

CMReply<QVariant> PlayLogicBase::stop(int reason)
{
    return command(TarnPlayLogicRoles::Stop(), reason);
}
