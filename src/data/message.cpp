#include "message.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>

#include "mxbook/error.h"
#include "mxbook/host.h"
#include "mxbook/text.h"

namespace mxbook::db::detail {

namespace {

// Firebird counts dates from 17.11.1858, this library from 30.12.1899.
constexpr int firebirdDayOfDateZero = 15018;
constexpr unsigned charSetOctets = 1;
constexpr unsigned charSetUtf8 = 4;
constexpr unsigned blobChunk = 32768;
constexpr std::size_t longestVarchar = 32765;  // bytes

template <typename T>
T load(const unsigned char* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <typename T>
void store(unsigned char* at, T value) {
    std::memcpy(at, &value, sizeof value);
}

FieldType fieldTypeOf(unsigned sqlType, int subType, int scale) {
    switch (sqlType) {
        case SQL_SHORT: case SQL_LONG: case SQL_INT64: return scale == 0 ? FieldType::integer : FieldType::numeric;
        case SQL_FLOAT: case SQL_DOUBLE: case SQL_D_FLOAT: return FieldType::floating;
        case SQL_TYPE_DATE: return FieldType::date;
        case SQL_TYPE_TIME: return FieldType::time;
        case SQL_TIMESTAMP: return FieldType::timestamp;
        case SQL_BOOLEAN: return FieldType::boolean;
        case SQL_BLOB: return subType == 1 ? FieldType::textBlob : FieldType::blob;
        default: return FieldType::text;
    }
}

bool holdsText(FieldType type) {
    return type == FieldType::text || type == FieldType::blob || type == FieldType::textBlob;
}

std::string readBlobContent(ISC_QUAD id, fb::IAttachment* attachment, fb::ITransaction* transaction) {
    fb::Status status;
    fb::IBlob* blob = attachment->openBlob(&status, transaction, &id, 0, nullptr);
    fb::Ref<fb::IBlob> owner(blob);
    std::string content;
    std::vector<char> chunk(blobChunk);
    for (;;) {
        unsigned length = 0;
        const int result = blob->getSegment(&status, blobChunk, chunk.data(), &length);
        if (result != fb::IStatus::RESULT_OK && result != fb::IStatus::RESULT_SEGMENT) break;
        content.append(chunk.data(), length);
    }
    blob->close(&status);
    owner.release();  // close released it
    return content;
}

ISC_QUAD writeBlob(const std::string& content, fb::IAttachment* attachment, fb::ITransaction* transaction) {
    fb::Status status;
    ISC_QUAD id{};
    fb::IBlob* blob = attachment->createBlob(&status, transaction, &id, 0, nullptr);
    fb::Ref<fb::IBlob> owner(blob);
    for (std::size_t at = 0; at < content.size(); at += blobChunk) {
        const std::size_t length = std::min<std::size_t>(blobChunk, content.size() - at);
        blob->putSegment(&status, static_cast<unsigned>(length), content.data() + at);
    }
    blob->close(&status);
    owner.release();
    return id;
}

[[noreturn]] void outOfRange(const Value& value) { throw ConversionError(value.asText(), "number in the field's range"); }

template <typename T>
T checkedInteger(const Value& value, std::int64_t number) {
    if (number < std::numeric_limits<T>::min() || number > std::numeric_limits<T>::max()) outOfRange(value);
    return static_cast<T>(number);
}

// A value as the integer Firebird keeps for a column of `scale` (negative:
// that many digits after the point), rounded once, half away from zero, the
// way Firebird converts; texts and doubles go there digit by digit.
std::int64_t scaledInteger(const Value& value, int scale) {
    const int digits = -scale;
    std::optional<Decimal> scaled;
    switch (value.kind()) {
        case ValueKind::text:
            scaled = Decimal::parse(value.asText(), host().formatSettings().decimalSeparator, digits);
            break;
        case ValueKind::floating: scaled = Decimal::fromDouble(value.asDouble(), digits); break;
        default: scaled = value.asDecimal().rescaled(digits);
    }
    if (!scaled) outOfRange(value);
    return scaled->scaled;
}

// NaN and infinities are refused: stored, they break every later query that
// compares or sums the column.
double checkedDouble(const Value& value) {
    const double number = value.asDouble();
    if (!std::isfinite(number)) outOfRange(value);
    return number;
}

float checkedFloat(const Value& value) {
    const double number = value.asDouble();
    if (!(std::fabs(number) <= static_cast<double>(std::numeric_limits<float>::max()))) outOfRange(value);
    return static_cast<float>(number);
}

// A FLOAT as the shortest decimal that reads back as the same float, so that
// 0.1 stored reads as 0.1 and not as 0.10000000149.
double widenFloat(float number) {
    char text[32];
    const auto written = std::to_chars(text, text + sizeof text, number);
    double wide = number;
    std::from_chars(text, written.ptr, wide);
    return wide;
}

void encode(const Column& column, const Value& value, unsigned char* message, fb::IAttachment* attachment,
            fb::ITransaction* transaction) {
    store<short>(message + column.nullOffset, value.isNull() ? -1 : 0);
    if (value.isNull()) return;
    unsigned char* at = message + column.offset;
    std::int64_t scaled = 0;
    if (column.sqlType == SQL_SHORT || column.sqlType == SQL_LONG || column.sqlType == SQL_INT64)
        scaled = scaledInteger(value, column.scale);
    switch (column.sqlType) {
        case SQL_VARYING: {
            const std::string text = value.asText();
            store<unsigned short>(at, static_cast<unsigned short>(text.size()));
            std::memcpy(at + 2, text.data(), text.size());
            break;
        }
        case SQL_SHORT: store(at, checkedInteger<std::int16_t>(value, scaled)); break;
        case SQL_LONG: store(at, checkedInteger<std::int32_t>(value, scaled)); break;
        case SQL_INT64: store(at, scaled); break;
        case SQL_FLOAT: store(at, checkedFloat(value)); break;
        case SQL_DOUBLE: case SQL_D_FLOAT: store(at, checkedDouble(value)); break;
        case SQL_TYPE_DATE: store<ISC_DATE>(at, value.asDate().serial() + firebirdDayOfDateZero); break;
        case SQL_TYPE_TIME: store(at, static_cast<ISC_TIME>(value.asTime().ticks())); break;
        case SQL_TIMESTAMP: {
            const Timestamp stamp = value.asTimestamp();
            store(at, ISC_TIMESTAMP{stamp.date.serial() + firebirdDayOfDateZero,
                                    static_cast<ISC_TIME>(stamp.time.ticks())});
            break;
        }
        case SQL_BOOLEAN: store<FB_BOOLEAN>(at, value.asBool() ? FB_TRUE : FB_FALSE); break;
        case SQL_BLOB: store(at, writeBlob(value.asText(), attachment, transaction)); break;
        default: throw Error("parameters of SQL type " + std::to_string(column.sqlType) + " are not supported");
    }
}

// A value for a NUMERIC field as the decimal it is. A text or double with
// more digits than 64 bits hold stays as it is, for encode() to round once to
// the column's scale; rounding here too could round twice (0,0049999...9 to
// 0,005 and then to 0,01).
Value exactDecimal(const Value& value) {
    const FormatSettings& settings = host().formatSettings();
    std::optional<Decimal> exact;
    switch (value.kind()) {
        case ValueKind::text: exact = Decimal::parseExact(value.asText(settings), settings.decimalSeparator); break;
        case ValueKind::floating: exact = Decimal::fromDoubleExact(value.asDouble()); break;
        default: return value.asDecimal();
    }
    return exact ? Value(*exact) : value;
}

}  // namespace

std::vector<Column> describe(fb::IMessageMetadata* metadata) {
    fb::Status status;
    return fb::guarded({}, [&] {
        std::vector<Column> columns(metadata->getCount(&status));
        for (unsigned i = 0; i < columns.size(); ++i) {
            Column& c = columns[i];
            c.sqlType = metadata->getType(&status, i);
            c.subType = metadata->getSubType(&status, i);
            c.length = metadata->getLength(&status, i);
            c.scale = metadata->getScale(&status, i);
            c.charSet = metadata->getCharSet(&status, i);
            c.offset = metadata->getOffset(&status, i);
            c.nullOffset = metadata->getNullOffset(&status, i);
            c.info.name = metadata->getAlias(&status, i);
            c.info.table = metadata->getRelation(&status, i);
            c.info.column = metadata->getField(&status, i);
            c.info.nullable = metadata->isNullable(&status, i);
            c.info.type = fieldTypeOf(c.sqlType, c.subType, c.scale);
        }
        return columns;
    });
}

Value convertForField(const Value& value, FieldType type) {
    if (value.isNull()) return value;
    if (holdsText(type)) return value.kind() == ValueKind::text ? value : Value(value.asText());
    if (value.kind() == ValueKind::text && trim(value.asText()).empty()) return Value();
    switch (type) {
        case FieldType::integer: return value.asInt64();
        case FieldType::numeric: return exactDecimal(value);
        case FieldType::floating: return value.asDouble();
        case FieldType::date: return value.asDate();
        case FieldType::time: return value.asTime();
        case FieldType::timestamp: return value.asTimestamp();
        case FieldType::boolean: return value.asBool();
        default: return value;
    }
}

Value decode(const Column& column, const unsigned char* row) {
    if (load<short>(row + column.nullOffset) != 0) return Value();
    const unsigned char* at = row + column.offset;
    const auto scaledNumber = [&](std::int64_t number) -> Value {
        if (column.scale == 0) return number;
        return Decimal{number, -column.scale};
    };
    switch (column.sqlType) {
        case SQL_VARYING:
            return std::string(reinterpret_cast<const char*>(at + 2), load<unsigned short>(at));
        case SQL_TEXT: {
            std::string text(reinterpret_cast<const char*>(at), column.length);
            if (column.charSet != charSetOctets) text.erase(text.find_last_not_of(' ') + 1);
            return text;
        }
        case SQL_SHORT: return scaledNumber(load<std::int16_t>(at));
        case SQL_LONG: return scaledNumber(load<std::int32_t>(at));
        case SQL_INT64: return scaledNumber(load<std::int64_t>(at));
        case SQL_FLOAT: return widenFloat(load<float>(at));
        case SQL_DOUBLE: case SQL_D_FLOAT: return load<double>(at);
        case SQL_TYPE_DATE: return Date::fromSerial(load<ISC_DATE>(at) - firebirdDayOfDateZero);
        case SQL_TYPE_TIME: return Time::fromTicks(load<ISC_TIME>(at));
        case SQL_TIMESTAMP: {
            const auto stamp = load<ISC_TIMESTAMP>(at);
            return Timestamp{Date::fromSerial(stamp.timestamp_date - firebirdDayOfDateZero),
                             Time::fromTicks(stamp.timestamp_time)};
        }
        case SQL_BOOLEAN: return load<FB_BOOLEAN>(at) != FB_FALSE;
        case SQL_BLOB: throw Error("a blob field is read by its id");
        case SQL_NULL: return Value();
        default: throw Error("columns of SQL type " + std::to_string(column.sqlType) + " are not supported");
    }
}

BlobId decodeBlobId(const Column& column, const unsigned char* row) {
    if (load<short>(row + column.nullOffset) != 0) return BlobId{};
    return BlobId{load<ISC_QUAD>(row + column.offset), true};
}

Value readBlob(const BlobId& blob, fb::IAttachment* attachment, fb::ITransaction* transaction) {
    if (!blob.present) return Value();
    return fb::guarded({}, [&] { return readBlobContent(blob.id, attachment, transaction); });
}

InputMessage::InputMessage(fb::IMessageMetadata* metadata, const std::vector<Column>& described,
                           const std::vector<Value>& values, fb::IAttachment* attachment,
                           fb::ITransaction* transaction)
    : metadata_(metadata) {
    const std::vector<Column> none;
    const std::vector<Column>* columns = metadata ? &described : &none;
    std::vector<Column> widenedColumns;
    if (values.size() != columns->size())
        throw ArgumentError("the statement takes " + std::to_string(columns->size()) + " parameter(s), " +
                            std::to_string(values.size()) + " given");
    if (!metadata) return;
    std::vector<Value> converted(columns->size());
    bool widen = false;
    for (std::size_t i = 0; i < columns->size(); ++i) {
        if (i < values.size()) converted[i] = convertForField(values[i], (*columns)[i].info.type);
        const Column& c = (*columns)[i];
        const bool textual = c.sqlType == SQL_TEXT || c.sqlType == SQL_VARYING || c.sqlType == SQL_NULL;
        if (textual && !converted[i].isNull() && converted[i].asText().size() > longestVarchar)
            throw Error("a text of " + std::to_string(converted[i].asText().size()) +
                        " bytes is longer than a text parameter or column can hold (" +
                        std::to_string(longestVarchar) + ")");
        widen = widen || (textual && !converted[i].isNull() &&
                          (c.sqlType != SQL_VARYING || converted[i].asText().size() > c.length));
    }
    fb::Status status;
    fb::guarded({}, [&] {
        if (widen) {
            fb::Ref<fb::IMetadataBuilder> builder(metadata->getBuilder(&status));
            for (std::size_t i = 0; i < columns->size(); ++i) {
                const Column& c = (*columns)[i];
                if (c.sqlType != SQL_TEXT && c.sqlType != SQL_VARYING && c.sqlType != SQL_NULL) continue;
                const auto index = static_cast<unsigned>(i);
                const std::size_t length = converted[i].isNull() ? 1 : converted[i].asText().size();
                builder->setType(&status, index, SQL_VARYING);
                builder->setLength(&status, index, static_cast<unsigned>(std::max<std::size_t>(length, 1)));
                if (c.sqlType == SQL_NULL) builder->setCharSet(&status, index, charSetUtf8);
            }
            widened_.reset(builder->getMetadata(&status));
            metadata_ = widened_.get();
            widenedColumns = describe(metadata_);
            columns = &widenedColumns;
        }
        buffer_.assign(metadata_->getMessageLength(&status), 0);
        for (std::size_t i = 0; i < columns->size(); ++i)
            encode((*columns)[i], converted[i], buffer_.data(), attachment, transaction);
    });
}

}  // namespace mxbook::db::detail
