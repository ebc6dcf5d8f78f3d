// Any bytes through the parser and the factory; a form or a message that
// comes out becomes the worker's dialog nodes, and each of its buttons is
// pressed: the URL of the press, its fields' rules, the message's links.
#include "module_support.h"

#include "ButtonItem.h"
#include "FormItem.h"
#include "MessageItem.h"
#include "airableform.h"
#include "airablemessage.h"

#include <cstdlib>

namespace {

void pressEveryButton(AirableForm const& form, airable::FormItem const& item)
{
    QStringList ids{QString(), QStringLiteral("submit"), QStringLiteral("nonexistent")};
    for (airable::ContentItem::Ptr const& entry : item.items())
        ids << entry->combinedId() << entry->name();
    for (QString const& id : ids) {
        QString error;
        TarnUrl const url = form.getQuery(id, &error);
        (void)url.toEncoded();
        (void)form.combineIdToQueryId(id);
    }
    (void)form.path();
    (void)form.formId();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    CMAirableWorker* const worker = fuzzsupport::worker();
    airable::AirableObject::Ptr const object = fuzzsupport::parse(fuzzsupport::bytes(data, size));
    if (auto const form = object.dynamicCast<airable::FormItem>()) {
        if (QSharedPointer<AirableForm> const dialog = AirableForm::create(worker, 1, form))
            pressEveryButton(*dialog, *form);
    } else if (auto const message = object.dynamicCast<airable::MessageItem>()) {
        if (QSharedPointer<AirableMessage> const dialog = AirableMessage::create(worker, 1, message)) {
            for (int i = 0; i < 40; ++i) {
                (void)dialog->getLink(i);
                (void)dialog->getCombinedId(i);
            }
        }
    }
    fuzzsupport::settle();
    return 0;
}
