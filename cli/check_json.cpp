// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include "cli/check_writer.h"
#include "cli/failure_text.h"
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
        if (!checked.models.empty()) writer_.key("model").value(checked.models.front()->name);
        if (checked.models.size() > 1) writeModels(checked.models);
        writer_.key("diagnostics").beginArray();
        for (const CheckedDiagnostic& found : checked.diagnostics) {
            tavrin::writeMembers(found, writer_.beginObject());
            if (isOfSomeModels(found, checked)) writeModels(found.models);
            writer_.endObject();
        }
        writer_.endArray();
        if (!checked.failures.empty()) writer_.key("error").value(messageOf(checked.failures));
        if (!checked.fixed.empty()) {
            writer_.key("fixed").beginArray();
            for (const Diagnostic& fixed : checked.fixed) tavrin::write(fixed, writer_);
            writer_.endArray();
        }
        writer_.endObject();
    }
    void fail(const Failure& failure) override { error_ = placedMessage(failure); }
    void finish() override {
        writer_.endArray();
        if (!error_.empty()) writer_.key("error").value(error_);
        writer_.endObject();
        writeStandardOutput(writer_.text() + "\n");
    }

private:
    void writeModels(const std::vector<const Source*>& models) {
        writer_.key("models").beginArray();
        for (const Source* const model : models) writer_.value(model->name);
        writer_.endArray();
    }

    static std::string messageOf(const std::vector<Failure>& failures) {
        std::string message;
        for (const Failure& failure : failures) message += (message.empty() ? "" : "; ") + placedMessage(failure);
        return message;
    }

    JSONWriter writer_{JSONWriter::Style::pretty};
    std::string error_;
};

}  // namespace

std::unique_ptr<CheckWriter> jsonCheckWriter() { return std::make_unique<JSONCheckWriter>(); }

}  // namespace tavrin::cli
