// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <typeinfo>
#include <utility>

#include "tavrin/dsl/dsl_version.h"
#include "tavrin/dsl/record.h"
#include "tavrin/dsl/record_contents.h"
#include "tavrin/platform/foundation/memory/counted.h"
#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {

/// The key that says which node or modifier an object is.
inline constexpr std::string_view typeKey = "type";

/// One record behind its tag, immutable and shared between copies: what `Node` and `Modifier` own.
template <class Tag>
class RecordBox : public Counted, public pool::Pooled {
public:
    RecordBox(Tag type, DSLVersion version) : type(type), version(version) {}
    RecordBox(const RecordBox&) = delete;
    RecordBox& operator=(const RecordBox&) = delete;
    virtual ~RecordBox() = default;

    [[nodiscard]] virtual const std::type_info& recordType() const = 0;
    /// The record, which is of `recordType`.
    [[nodiscard]] virtual const void* record() const = 0;
    /// Names the record as it was decoded: a copy that is bound to a model has the same.
    [[nodiscard]] virtual const void* identity() const { return record(); }
    /// Shows `visitor` the nodes and modifiers that the record holds.
    virtual void showContents(ContentsVisitor& visitor) const = 0;
    [[nodiscard]] virtual bool equals(const RecordBox& other) const = 0;
    /// Writes the record's members behind its "type".
    virtual void encodeMembers(JSONWriter& writer) const = 0;

    const Tag type;
    const DSLVersion version;
    /// Whether some expression waits for a model, or binding fails. Otherwise the record is never copied.
    [[nodiscard]] bool needsBinding() const { return needsBinding_; }

protected:
    bool needsBinding_ = false;  // settled once, when the box is made
};

/// A record's text form for messages: its tag and its members.
template <class Tag>
[[nodiscard]] std::string describe(const RecordBox<Tag>& box) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject();
    box.encodeMembers(writer);
    writer.endObject();
    return std::string(rawValue(box.type)) + " " + std::move(writer).text();
}

/// What binding and drawing a record come to that can do neither; `kind` is "Node" or "Modifier".
template <class Tag>
[[noreturn]] void failUnsupported(const char* kind, const RecordBox<Tag>& box) {
    throw TavrinError(kind, "unsupported type: " + describe(box) + ")");
}

/// The box of one record type; `Base` is the interface of nodes or of modifiers. A record that is not `supported` can
/// be stored, but neither bound nor drawn.
template <DSLRecord Record, class Base, bool supported>
class RecordBoxOf : public Base {
public:
    explicit RecordBoxOf(Record held) : Base(Record::type, Record::version), record_(std::move(held)) { settle(); }
    /// Decodes the record where it stays.
    explicit RecordBoxOf(const Decoder& decoder)
        : Base(Record::type, Record::version), record_(decodeRecord<Record>(decoder)) {
        settle();
    }

    void showContents(ContentsVisitor& visitor) const final { visitContents(record_, visitor); }
    const std::type_info& recordType() const final { return typeid(Record); }
    const void* record() const final { return &record_; }
    bool equals(const typename Base::Tagged& other) const final {
        return other.recordType() == typeid(Record) &&
               fieldsEqual(record_, *static_cast<const Record*>(other.record()));
    }
    void encodeMembers(JSONWriter& writer) const final { encodeFields(record_, writer); }

protected:
    /// A bound copy of the record.
    [[nodiscard]] Record boundRecord(const ModelContext& model) const {
        if constexpr (!supported) failUnsupported(Base::name, *this);
        return boundCopy(record_, model);
    }

    const Record record_;

private:
    void settle() { this->needsBinding_ = !supported || tavrin::needsBinding(record_); }
};

/// Writes a tagged record: its "type" and, beside it, its members.
template <class Tag>
void encodeTagged(const RecordBox<Tag>& box, JSONWriter& writer) {
    writer.beginObject().key(typeKey).value(rawValue(box.type));
    box.encodeMembers(writer);
    writer.endObject();
}

/// A tagged record as a value: cheap to copy, immutable but for `bindModel`. What nodes and modifiers have in common.
template <class Box>
class BoxedRecord {
public:
    [[nodiscard]] auto type() const { return box_->type; }
    [[nodiscard]] DSLVersion version() const { return box_->version; }

    /// The record inside when it is a `Record`, else null.
    template <DSLRecord Record>
    [[nodiscard]] const Record* as() const {
        return box_->recordType() == typeid(Record) ? static_cast<const Record*>(box_->record()) : nullptr;
    }

    [[nodiscard]] bool needsBinding() const { return box_->needsBinding(); }
    /// Resolves the record's own expressions; not those of the nodes and modifiers in it, which are bound when they are
    /// drawn. Throws `ModelContextError`, or `TavrinError` for a record that can not be drawn, and then changes
    /// nothing.
    void bindModel(const ModelContext& model) {
        if (box_->needsBinding()) box_ = box_->bound(model);
    }

    /// Names the record as it was decoded; copies, bound nodes too, have the same.
    [[nodiscard]] const void* identity() const { return box_->identity(); }
    /// Shows `visitor` the nodes and modifiers that the record holds itself.
    void showContents(ContentsVisitor& visitor) const { box_->showContents(visitor); }

    friend bool operator==(const BoxedRecord& a, const BoxedRecord& b) {
        return a.box_ == b.box_ || a.box_->equals(*b.box_);
    }

protected:
    explicit BoxedRecord(CountedPtr<Box> box) : box_(std::move(box)) {}

    CountedPtr<Box> box_;
};

}  // namespace tavrin
