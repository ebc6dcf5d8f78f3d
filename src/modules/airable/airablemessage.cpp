#include "airablemessage.h"

#include "airableerrors.h"
#include "ButtonItem.h"
#include "airableform.h"
#include "cmworker.h"
#include "tarnconstants.h"
#include "tarndialogtypes.h"
#include "tarnmediadata.h"
#include "tarnoauth2.h"


QSharedPointer<AirableMessage> AirableMessage::create(CMNodesWorker* worker, int id, airable::MessageItem::Ptr message)
{
    return QSharedPointer<AirableMessage>(new AirableMessage(worker, id, *message));
}

AirableMessage::AirableMessage(CMNodesWorker* worker, int id, airable::MessageItem const& message)
{
    CMPath const root = worker->addPrefix(TarnAirablePrefixMessage() + QString::number(id));
    mRoot = nodeHandle(CMListRowsNode::create(worker->nodes(), root));
    mRoot->setTitle(TrString(message.title()));
    mRoot->setId(message.combinedId());
    mRoot->setDescription(TrString(message.description()));
    // A login dialog is drawn as a list: its rows offer the ways to log in.
    mRoot->setContainerType(int(message.name() == QLatin1String("oauth") ? TarnDialogContainerType::List
                                                                          : TarnDialogContainerType::Dialog));

    mText = nodeHandle(CMUINode::create(worker->nodes(), root + QStringLiteral(":text")));
    mText->setTitle(TrString(message.description()));
    mRoot->rowsAppend(mText->path());

    auto const items = message.items();
    for (int i = 0; i < items.size(); ++i) {
        airable::ContentItem const& item = *items.at(i);
        auto const node = nodeHandle(CMActivateNode::create(worker->nodes(), root + QStringLiteral(":%1").arg(i)));
        node->setTitle(TrString(item.title()));
        node->setId(item.combinedId());
        mButtons << node;
        mLinks << (item.name() == QLatin1String("cancel") ? QString() : item.url());

        if (item.name() == QLatin1String("oauth")) {
            CMPath flow = TarnAirableOAuthPath();
            flow.addParam(QStringLiteral("url"), item.url());
            CMPath app = flow;
            app.addParam(QStringLiteral("oauthType"), QStringLiteral("app"));
            CMPath browser = flow;
            browser.addParam(QStringLiteral("oauthType"), QStringLiteral("browser"));
            TarnOAuth2Info info;
            info.setLoggedIn(false).setBrowserAuthFlowPath(browser).setAppAuthFlowPath(app);
            TarnRoles row;
            row.setTitle(TrString(item.title()));
            row.setType(int(TarnDialogRowType::OAuth2Login));
            row.setId(item.combinedId());
            row.setValue(TarnValue().setOauth2Info(info));
            mRoot->rowsAppend(row);
        } else if (item.name() == QLatin1String("signup") && item.stype() == QLatin1String("amazon")) {
            TarnRoles row;
            row.setTitle(TrString(item.title()));
            row.setType(int(TarnDialogRowType::Link));
            row.setId(item.combinedId());
            row.setMediaData(TarnMediaData().setResources({TarnResource().setUri(item.url()).__variant()}));
            mRoot->rowsAppend(row);
        } else {
            mRoot->rowsAppend(node->path());
        }
    }
}

AirableMessage::~AirableMessage()
{
    // Links and buttons go before the text and the dialog that show them.
    mLinks.clear();
    mButtons.clear();
    mText.reset();
    mRoot.reset();
}

QString AirableMessage::getLink(int index) const
{
    AIRABLE_ASSERT(index >= 0, "index >= 0");
    return mLinks.value(index);
}

QString AirableMessage::getCombinedId(int index) const
{
    AIRABLE_ASSERT(index >= 0, "index >= 0");
    return index < mButtons.size() ? mButtons.at(index)->id() : QString();
}

void AirableMessage::closeWithRedirect(CMPath const& path)
{
    mRoot->sendCloseEvent(path);
}
