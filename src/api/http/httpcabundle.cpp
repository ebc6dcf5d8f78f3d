#include "httpcabundle.h"

#include <QFile>

HttpCaBundle HttpCaBundle::read(QString const& file)
{
    HttpCaBundle bundle;
    bundle.mFile = file;
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly)) {
        bundle.mError = QStringLiteral("cannot read the CA certificates %1: %2").arg(file, in.errorString());
        return bundle;
    }
    for (QSslCertificate const& certificate : QSslCertificate::fromDevice(&in, QSsl::Pem)) {
        if (!certificate.isNull())
            bundle.mCertificates.append(certificate);
    }
    if (bundle.mCertificates.isEmpty())
        bundle.mError = QStringLiteral("%1 holds no PEM certificate").arg(file);
    return bundle;
}
