#pragma once

#include "JsonValue.h"
#include "Portable_ReferenceCountedObject.h"

#include <QByteArray>

namespace portable {
namespace utils {

// Owns one parse. A new parse replaces the previous tree, and every handle
// taken from the old root must be dropped before that.
class JsonParser : public portable::ReferenceCountedObject
{
public:
    typedef portable::SmartPointer<JsonParser> Ptr;

    JsonParser();
    ~JsonParser() override;

    // False for a bad document and for one without any value; the root is
    // then invalid. The reason is not kept.
    bool parse(QByteArray const& data);

    // Never null; invalid before the first good parse.
    portable::SmartPointer<RootJsonValue> root() const { return mRoot; }

    // Debugging hook: walks the root's children without any output.
    void dump() const;

private:
    portable::SmartPointer<RootJsonValue> mRoot;
};

} // namespace utils
} // namespace portable
