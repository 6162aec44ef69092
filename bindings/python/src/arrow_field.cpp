// SPDX-License-Identifier: MIT
#include "bindings/python/src/arrow_field.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <sys/mman.h>
#include <utility>

#include "tavrin/platform/foundation/strings/utf8.h"

namespace nb = nanobind;

namespace tavrin::python {

void FreeBlock::operator()(std::uint8_t* bytes) const {
    if (mapped > 0)
        ::munmap(bytes, mapped);
    else
        std::free(bytes);
}

void ArrowBuffer::append(const void* bytes, std::size_t count) {
    constexpr std::size_t least = 64;
    if (count == 0) return;
    if (count > capacity_ - size_) grow(std::max({size_ + count, 2 * capacity_, least}));
    std::memcpy(bytes_.get() + size_, bytes, count);
    size_ += count;
}

void ArrowBuffer::grow(std::size_t capacity) {
    constexpr std::size_t leastMapped = std::size_t{4} << 20;
    void* moved = nullptr;
    if (capacity < leastMapped) {
        moved = std::realloc(bytes_.get(), capacity);
        if (moved == nullptr) throw std::bad_alloc();
        static_cast<void>(bytes_.release());
        bytes_ = {static_cast<std::uint8_t*>(moved), FreeBlock{}};
    } else {
        // What is mapped grows without a copy, and in large pages: looking at every small one for the first time would
        // be most of what a large buffer costs.
        const std::size_t mapped = bytes_.get_deleter().mapped;
        moved = mapped > 0 ? ::mremap(bytes_.get(), mapped, capacity, MREMAP_MAYMOVE)
                           : ::mmap(nullptr, capacity, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (moved == MAP_FAILED) throw std::bad_alloc();
        ::madvise(moved, capacity, MADV_HUGEPAGE);
        if (mapped > 0)
            static_cast<void>(bytes_.release());
        else if (size_ > 0)
            std::memcpy(moved, bytes_.get(), size_);
        bytes_ = {static_cast<std::uint8_t*>(moved), FreeBlock{capacity}};
    }
    capacity_ = capacity;
}

ArrowField ArrowField::numbers(std::string name, std::string format, std::size_t width) {
    ArrowField field(std::move(name), std::move(format), Layout::numbers);
    field.width_ = width;
    return field;
}

ArrowField ArrowField::texts(std::string name) { return {std::move(name), "u", Layout::bytes}; }

ArrowField ArrowField::binary(std::string name) { return {std::move(name), "z", Layout::bytes}; }

ArrowField ArrowField::lists(std::string name, ArrowField items) {
    ArrowField field(std::move(name), "+l", Layout::lists);
    field.fields_.push_back(std::move(items));
    return field;
}

void ArrowField::addValid(bool isValid) {
    if (length_ % 8 == 0) valid_.push_back(0);
    if (isValid) valid_.back() = static_cast<std::uint8_t>(valid_.back() | 1U << (length_ % 8));
    if (!isValid) ++nulls_;
    ++length_;
}

void ArrowField::addEnd() {
    ends_.push_back(layout_ == Layout::lists ? fields_[0].length_ : static_cast<std::int64_t>(values_.size()));
}

void ArrowField::addNull() {
    constexpr std::uint64_t nothing = 0;
    switch (layout_) {
        case Layout::numbers: values_.append(&nothing, width_); break;
        case Layout::bytes:
        case Layout::lists: addEnd(); break;
        case Layout::records:
            for (ArrowField& field : fields_) field.addNull();
            break;
    }
    addValid(false);
}

void ArrowField::addText(std::string_view text) { addBytes(isValidUtf8(text) ? text : sanitizedUtf8(text)); }

void ArrowField::addBytes(std::string_view bytes) {
    values_.append(bytes.data(), bytes.size());
    addEnd();
    addValid(true);
}

void ArrowField::addList() {
    addEnd();
    addValid(true);
}

ArrowBuffer ArrowField::takeOffsets() {
    ArrowBuffer offsets;
    const auto append = [&](auto begin) {
        offsets.append(&begin, sizeof begin);
        for (const std::int64_t end : std::exchange(ends_, {})) {
            const auto offset = static_cast<decltype(begin)>(end);
            offsets.append(&offset, sizeof offset);
        }
    };
    if (ends_.empty() || ends_.back() <= std::numeric_limits<std::int32_t>::max()) {
        append(std::int32_t{0});
    } else {
        format_.back() = static_cast<char>(format_.back() - 'a' + 'A');
        append(std::int64_t{0});
    }
    return offsets;
}

struct ArrowField::SchemaOwner {
    std::string name;
    std::string format;
    std::vector<ArrowSchema> fields;
    std::vector<ArrowSchema*> pointers;

    ~SchemaOwner() {
        for (ArrowSchema& field : fields)
            if (field.release != nullptr) field.release(&field);  // else it has been taken out
    }
    static void release(ArrowSchema* schema) {
        delete static_cast<SchemaOwner*>(schema->private_data);
        schema->release = nullptr;
    }
};

struct ArrowField::ArrayOwner {
    std::vector<std::uint8_t> valid;
    ArrowBuffer offsets;
    ArrowBuffer values;
    std::vector<const void*> buffers;
    std::vector<ArrowArray> fields;
    std::vector<ArrowArray*> pointers;

    ~ArrayOwner() {
        for (ArrowArray& field : fields)
            if (field.release != nullptr) field.release(&field);  // else it has been taken out
    }
    static void release(ArrowArray* array) {
        delete static_cast<ArrayOwner*>(array->private_data);
        array->release = nullptr;
    }
};

void ArrowField::moveTo(ArrowField field, ArrowSchema& schema, ArrowArray& array) {
    auto arrayOwner = std::make_unique<ArrayOwner>();
    auto schemaOwner = std::make_unique<SchemaOwner>();
    const bool hasOffsets = field.layout_ == Layout::bytes || field.layout_ == Layout::lists;
    const bool hasValues = field.layout_ == Layout::bytes || field.layout_ == Layout::numbers;
    if (hasOffsets) arrayOwner->offsets = field.takeOffsets();
    arrayOwner->valid = std::move(field.valid_);
    arrayOwner->values = std::move(field.values_);
    arrayOwner->buffers.push_back(field.nulls_ == 0 ? nullptr : arrayOwner->valid.data());
    if (hasOffsets) arrayOwner->buffers.push_back(arrayOwner->offsets.data());
    if (hasValues) arrayOwner->buffers.push_back(arrayOwner->values.data());

    schemaOwner->name = std::move(field.name_);
    schemaOwner->format = std::move(field.format_);
    const std::size_t count = field.fields_.size();
    schemaOwner->fields.resize(count);
    arrayOwner->fields.resize(count);
    for (std::size_t index = 0; index < count; ++index) {
        moveTo(std::move(field.fields_[index]), schemaOwner->fields[index], arrayOwner->fields[index]);
        schemaOwner->pointers.push_back(&schemaOwner->fields[index]);
        arrayOwner->pointers.push_back(&arrayOwner->fields[index]);
    }

    const auto fieldCount = static_cast<std::int64_t>(count);
    schema = {.format = schemaOwner->format.c_str(),
              .name = schemaOwner->name.c_str(),
              .metadata = nullptr,
              .flags = ARROW_FLAG_NULLABLE,
              .n_children = fieldCount,
              .children = schemaOwner->pointers.data(),
              .dictionary = nullptr,
              .release = SchemaOwner::release,
              .private_data = schemaOwner.get()};
    array = {.length = field.length_,
             .null_count = field.nulls_,
             .offset = 0,
             .n_buffers = static_cast<std::int64_t>(arrayOwner->buffers.size()),
             .n_children = fieldCount,
             .buffers = arrayOwner->buffers.data(),
             .children = arrayOwner->pointers.data(),
             .dictionary = nullptr,
             .release = ArrayOwner::release,
             .private_data = arrayOwner.get()};
    static_cast<void>(schemaOwner.release());
    static_cast<void>(arrayOwner.release());
}

namespace {

/// Gives back what nobody has taken out.
struct Releasing {
    template <class T>
    void operator()(T* held) const {
        if (held->release != nullptr) held->release(held);
        delete held;
    }
};

template <class T>
using Held = std::unique_ptr<T, Releasing>;

template <class T>
void endCapsule(PyObject* capsule) {
    const Held<T> held(static_cast<T*>(PyCapsule_GetPointer(capsule, PyCapsule_GetName(capsule))));
}

template <class T>
nb::object capsuleOf(Held<T> held, const char* name) {
    PyObject* const capsule = PyCapsule_New(held.get(), name, endCapsule<T>);
    if (capsule == nullptr) throw nb::python_error();
    static_cast<void>(held.release());
    return nb::steal(capsule);
}

}  // namespace

nb::tuple ArrowField::capsules(ArrowField field) {
    Held<ArrowSchema> schema(new ArrowSchema{});
    Held<ArrowArray> array(new ArrowArray{});
    moveTo(std::move(field), *schema, *array);
    const nb::object schemaCapsule = capsuleOf(std::move(schema), "arrow_schema");
    return nb::make_tuple(schemaCapsule, capsuleOf(std::move(array), "arrow_array"));
}

}  // namespace tavrin::python
