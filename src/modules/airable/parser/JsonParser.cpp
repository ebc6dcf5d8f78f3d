#include "JsonParser.h"

#include "json.h"

namespace portable {
namespace utils {

JsonParser::JsonParser()
    : mRoot(new RootJsonValue())
{
}

JsonParser::~JsonParser() = default;

bool JsonParser::parse(QByteArray const& data)
{
    // Nodes are small and a cloud answer rarely fills more than a few blocks.
    auto* allocator = new block_allocator(block_allocator::kKeptBlockSize);
    // Replacing the root releases the previous tree before the new parse.
    mRoot = new RootJsonValue(data, allocator);

    QByteArray& text = mRoot->data();
    // data() detaches, and a QByteArray always keeps a zero behind its bytes.
    char* source = text.data();

    char* errorPos = nullptr;
    const char* errorDesc = nullptr;
    int errorLine = 0;
    json_value* value = json_parse(source, static_cast<unsigned long>(text.size()), &errorPos, &errorDesc,
                                   &errorLine, allocator);
    mRoot->assign(value);
    return mRoot->isValid();
}

void JsonParser::dump() const
{
    for (JsonValue::Ptr child = mRoot->firstChild(); child->isValid(); child = child->nextSibling())
        child->type();
}

} // namespace utils
} // namespace portable
