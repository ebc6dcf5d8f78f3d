#pragma once

#include <QString>
#include <QVariant>

// The Value role carries a platform value record, one typed field such as
// {"string": "de_DE"}; a person may type the field's value bare.
//
// Makes the record to send for the value typed. stored is the value the
// platform holds at the path, or invalid when it holds none there; then a
// bare string, truth or number becomes the field of that kind. A stored
// value fixes the type: the typed value, bare or as a record, must have the
// type of the stored field, and a bare one takes the stored field's name.
// False when it doesn't, with what the path takes in *expected, such as
// 'a string such as "en_US"'.
bool toValueRecord(QVariant const& typed, QVariant const& stored, QVariant* record, QString* expected);
