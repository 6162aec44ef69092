#include "cli/check_writer.h"

namespace tavrin::cli {
namespace {

/// On standard error, as compilers write it; errors are reported by whoever runs the check.
class TextWriter final : public CheckWriter {
public:
    TextWriter(const Reporter& reporter, const Source* model) : reporter_(reporter), model_(model) {}

    void write(const CheckedDocument& checked) override {
        for (const Diagnostic& found : checked.diagnostics)
            if (!found.cause) reporter_.note(found, sourceOf(found, checked.document, model_));
    }

private:
    const Reporter& reporter_;
    const Source* model_;
};

}  // namespace

std::unique_ptr<CheckWriter> textCheckWriter(const Reporter& reporter, const Source* model) {
    return std::make_unique<TextWriter>(reporter, model);
}

}  // namespace tavrin::cli
