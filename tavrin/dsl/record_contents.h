// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tavrin/dsl/record.h"
#include "tavrin/platform/foundation/coding_path.h"

namespace tavrin {

class Node;
class Modifier;

/// Is shown the nodes and modifiers that a record holds, each with the way to it.
class ContentsVisitor {
public:
    virtual ~ContentsVisitor() = default;

    virtual void visit(const Node& node) = 0;
    virtual void visit(const Modifier& modifier) = 0;

    /// The way from where the visit began to what is shown.
    CodingPath way;
};

template <DSLRecord Record>
void visitContents(const Record& record, ContentsVisitor& visitor);

/// How a property shows the nodes and modifiers in it; by default it holds none.
template <class Wrapper>
struct FieldContents {
    static void visit(const Wrapper&, ContentsVisitor&) {}
};

template <class T>
struct FieldContents<DSLValueWithDefault<std::vector<T>>> {
    static void visit(const DSLValueWithDefault<std::vector<T>>& list, ContentsVisitor& visitor) {
        for (std::size_t i = 0; i < list.wrappedValue().size(); ++i) {
            visitor.way.emplace_back(i);
            visitor.visit(list.wrappedValue()[i]);
            visitor.way.pop_back();
        }
    }
};

template <DSLRecord T>
struct FieldContents<DSLValue<T>> {
    static void visit(const DSLValue<T>& value, ContentsVisitor& visitor) {
        visitContents(value.wrappedValue, visitor);
    }
};

template <DSLRecord T>
struct FieldContents<DSLValue<std::optional<T>>> {
    static void visit(const DSLValue<std::optional<T>>& value, ContentsVisitor& visitor) {
        if (value.wrappedValue) visitContents(*value.wrappedValue, visitor);
    }
};

template <DSLRecord Record>
void visitContents(const Record& record, ContentsVisitor& visitor) {
    forEachField<Record>([&]<class Wrapper>(const Field<Record, Wrapper>& field) {
        visitor.way.emplace_back(std::string(field.key));
        FieldContents<Wrapper>::visit(record.*field.member, visitor);
        visitor.way.pop_back();
    });
}

}  // namespace tavrin
