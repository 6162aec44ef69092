// SPDX-License-Identifier: MIT

#include "cli/check_writer.h"
#include "cli/output.h"
#include "tavrin/diagnostics/write_diagnostic.h"

namespace tavrin::cli {
namespace {

/// One object with the documents and what was found in each.
class JSONCheckWriter final : public CheckWriter {
public:
    JSONCheckWriter() { writer_.beginObject().key("documents").beginArray(); }

    void write(const CheckedDocument& checked) override {
        writer_.beginObject().key("document").value(checked.document.name);
        if (checked.model) writer_.key("model").value(checked.model->name);
        writer_.key("diagnostics").beginArray();
        for (const Diagnostic& found : checked.diagnostics) tavrin::write(found, writer_);
        writer_.endArray();
        if (checked.unread) writer_.key("error").value(checked.unread->message);
        if (!checked.fixed.empty()) {
            writer_.key("fixed").beginArray();
            for (const Diagnostic& fixed : checked.fixed) tavrin::write(fixed, writer_);
            writer_.endArray();
        }
        writer_.endObject();
    }
    void fail(const Failure& failure) override { error_ = failure.message; }
    void finish() override {
        writer_.endArray();
        if (!error_.empty()) writer_.key("error").value(error_);
        writer_.endObject();
        writeStandardOutput(writer_.text() + "\n");
    }

private:
    JSONWriter writer_{JSONWriter::Style::pretty};
    std::string error_;
};

}  // namespace

std::unique_ptr<CheckWriter> jsonCheckWriter() { return std::make_unique<JSONCheckWriter>(); }

}  // namespace tavrin::cli
