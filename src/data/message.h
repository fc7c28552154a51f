// Firebird messages: the buffers that carry a statement's parameters in and
// its rows out, laid out by the statement's metadata.
#pragma once

#include <string>
#include <vector>

#include "firebird.h"
#include "mxbook/data/field_info.h"
#include "mxbook/data/value.h"

namespace mxbook::db::detail {

struct Column {
    FieldInfo info;
    unsigned sqlType = 0;
    int subType = 0;
    unsigned length = 0;
    int scale = 0;
    unsigned charSet = 0;
    unsigned offset = 0;
    unsigned nullOffset = 0;
};

std::vector<Column> describe(fb::IMessageMetadata* metadata);

// The value converted to what a field of `type` holds; NULL stays NULL and
// empty text becomes NULL for a field that does not hold text.
Value convertForField(const Value& value, FieldType type);

// Reads one field of a fetched row; not a blob's (see decodeBlobId).
Value decode(const Column& column, const unsigned char* row);

// Where a blob field's content is kept; not present when the field is NULL.
struct BlobId {
    ISC_QUAD id{};
    bool present = false;
};
BlobId decodeBlobId(const Column& column, const unsigned char* row);
// A blob's whole content (empty for a blob id not present), read in segments
// in `transaction`, which must be the one its id was read in.
Value readBlob(const BlobId& blob, fb::IAttachment* attachment, fb::ITransaction* transaction);

// The input message of one execution: values converted to the parameters'
// types and laid out by their metadata; blobs are written in `transaction`.
// A text parameter goes as a VARCHAR of the text's own length, so that the
// buffer holds all of it and Firebird, not this layer, judges whether it fits.
class InputMessage {
public:
    // `columns` describe `metadata`, as the prepared statement keeps them.
    InputMessage(fb::IMessageMetadata* metadata, const std::vector<Column>& columns, const std::vector<Value>& values,
                 fb::IAttachment* attachment, fb::ITransaction* transaction);

    fb::IMessageMetadata* metadata() const { return metadata_; }
    unsigned char* buffer() { return buffer_.empty() ? nullptr : buffer_.data(); }

private:
    fb::IMessageMetadata* metadata_ = nullptr;
    fb::Ref<fb::IMessageMetadata> widened_;
    std::vector<unsigned char> buffer_;
};

}  // namespace mxbook::db::detail
