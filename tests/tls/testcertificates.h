#pragma once

#include <QString>

// Certificates for tests, made at run time into a directory of the test's
// own: a throwaway CA and the server certificates the tests show to a
// device. Nothing secret is ever committed. Unless said otherwise, a server
// certificate is made out for 127.0.0.1 and localhost.
class TestCertificates
{
public:
    struct Pair
    {
        QString certificate;
        QString key;
    };

    // Makes them all; isValid() is false, with errorString(), when that failed.
    explicit TestCertificates(QString const& directory);

    bool isValid() const { return mError.isEmpty(); }
    QString const& errorString() const { return mError; }

    // The throwaway CA's certificate: the bundle a device is told to trust.
    QString const& caFile() const { return mCa; }
    // A CA that signed none of the certificates below.
    QString const& otherCaFile() const { return mOtherCa; }

    Pair const& good() const { return mGood; }
    // Signed with its own key: no CA vouches for it.
    Pair const& selfSigned() const { return mSelfSigned; }
    // Signed by the CA, and ended a day ago.
    Pair const& expired() const { return mExpired; }
    // Signed by the CA, for other.example only.
    Pair const& otherHost() const { return mOtherHost; }

private:
    QString mError;
    QString mCa;
    QString mOtherCa;
    Pair mGood;
    Pair mSelfSigned;
    Pair mExpired;
    Pair mOtherHost;
};
