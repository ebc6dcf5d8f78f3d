#include "cmvalueitem.h"

#include "cmhandover.h"
#include "cmroot.h"

CMValueItem::CMValueItem(QObject* parent, CMPath const& path) : QObject(parent), mPath(path)
{
    auto* root = CMRootWorker::instance();
    connect(root, &CMRootWorker::valueChanged, this,
            [this](CMPath const& p, TarnValue const& newValue, TarnValue const& oldValue) {
                if (p == mPath)
                    emit changed(newValue, oldValue);
            });
    // Read after connecting, so no change is lost; queued, so the creator
    // can connect first, and ahead of any change that follows.
    TarnValue const current = TarnValue::fromVariant(root->getValue(mPath));
    cmHandOver(this, [this, current] { emit changed(current, TarnValue()); });
}
