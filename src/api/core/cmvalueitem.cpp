#include "cmvalueitem.h"
#include "cmroot.h"

CMValueItem::CMValueItem(QObject* parent, CMPath const& path) : QObject(parent), mPath(path)
{
    auto* root = CMRootWorker::instance();
    connect(root, &CMRootWorker::valueChanged, this,
            [this](CMPath const& p, TarnValue const& newValue, TarnValue const& oldValue) {
                if (p == mPath)
                    emit changed(newValue, oldValue);
            });
    QMetaObject::invokeMethod(this, &CMValueItem::deliverCurrent, Qt::QueuedConnection);
}

void CMValueItem::deliverCurrent()
{
    emit changed(TarnValue::fromVariant(CMRootWorker::instance()->getValue(mPath)), TarnValue());
}
