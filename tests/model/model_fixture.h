#pragma once

#include "AirableObjectFactory.h"
#include "JsonParser.h"

#include <QByteArray>

// Builds the object tree of a document the way the connection does: the
// parser is gone when the tree is handed out, so every test also checks that
// the strings the tree keeps in the document outlive the parser.
inline airable::AirableObject::Ptr parseDocument(QByteArray const& json)
{
    portable::utils::JsonParser parser;
    if (!parser.parse(json))
        return airable::AirableObject::Ptr();
    return airable::AirableObjectFactory::instance()->parseDocument(parser);
}

template <typename T>
portable::SmartPointer<T> parseAs(QByteArray const& json)
{
    return parseDocument(json).dynamicCast<T>();
}
