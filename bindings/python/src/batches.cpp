// SPDX-License-Identifier: MIT
#include "bindings/python/src/batches.h"

#include <chrono>
#include <cstddef>
#include <exception>
#include <new>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include <nanobind/stl/optional.h>
#include <nanobind/stl/pair.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>

#include "bindings/python/src/arguments.h"
#include "bindings/python/src/batch.h"
#include "bindings/python/src/calls.h"
#include "bindings/python/src/drawn_rows.h"
#include "tavrin/doors/option_error.h"
#include "tavrin/images/picture_downloads.h"

namespace nb = nanobind;

namespace tavrin::python {
namespace {

/// Has signals heard now and then by a thread that works without the interpreter.
class Signals {
public:
    void check() {
        const auto now = std::chrono::steady_clock::now();
        if (now < next_) return;
        next_ = now + std::chrono::milliseconds(100);
        const nb::gil_scoped_acquire acquire;
        if (PyErr_CheckSignals() != 0) throw nb::python_error();
    }

private:
    std::chrono::steady_clock::time_point next_ = std::chrono::steady_clock::now() + std::chrono::milliseconds(100);
};

/// Does a row's work; what it fails with is the row's own affair.
template <class Work>
std::optional<ErrorDescription> failureOf(const Work& work) {
    try {
        work();
        return std::nullopt;
    } catch (const CallError& error) {
        return error.description;
    } catch (const OptionError& error) {
        return ErrorDescription{"UsageError", error.what()};  // as the program calls it
    } catch (const std::bad_alloc&) {
        return describeError(std::current_exception());
    }
}

nb::tuple drawRows(std::size_t count, nb::handle document, nb::handle model, const nb::dict& options,
                   const nb::dict& columns) {
    const Batch batch(count, document, model, options, columns);
    DrawnRows rows;
    unlocked([&] {
        Signals signals;
        for (std::size_t row = 0; row < count; ++row) {
            signals.check();
            DrawnPicture drawn;
            const auto failure = failureOf([&] {
                const DrawingOptions drawing = batch.options(row);
                drawn = batch.document(row, drawing.widget.budget).draw(batch.model(row), drawing);
            });
            if (failure)
                rows.add(*failure);
            else
                rows.add(drawn);
        }
    });
    return ArrowField::capsules(rows.take());
}

/// The address of each picture that rows name, with its file's name in a folder of pictures; each once.
std::vector<std::pair<std::string, std::string>> rowPictures(std::size_t count, nb::handle document, nb::handle model,
                                                             const nb::dict& options, const nb::dict& columns) {
    const Batch batch(count, document, model, options, columns);
    std::vector<std::pair<std::string, std::string>> pictures;
    unlocked([&] {
        Signals signals;
        std::unordered_set<std::string> seen;
        for (std::size_t row = 0; row < count; ++row) {
            signals.check();
            static_cast<void>(failureOf([&] {  // which drawing tells
                const DrawingOptions drawing = batch.options(row);
                const OpenDocument opened = batch.document(row, drawing.widget.budget);
                for (const NamedPicture& picture : opened.pictures(batch.model(row), drawing))
                    if (seen.insert(picture.fileName + ' ' + picture.url.string()).second)
                        pictures.emplace_back(picture.url.string(), picture.fileName);
            }));
        }
    });
    return pictures;
}

/// Downloads under way: one after the other the index of an address with its picture's bytes, or what went wrong.
class Downloads {
public:
    Downloads(const std::vector<std::string>& addresses, const nb::dict& options)
        : downloads_(urlsOf(addresses), drawingOptions(options).widget.fetchPolicy) {}

    nb::object next() {
        Signals signals;
        const auto download = unlocked([&] { return downloads_.next([&signals] { signals.check(); }); });
        if (!download) return nb::none();
        return nb::make_tuple(download->index, nb::bytes(download->bytes.data(), download->bytes.size()),
                              download->error);
    }

private:
    static std::vector<URL> urlsOf(const std::vector<std::string>& addresses) {
        std::vector<URL> urls;
        for (const std::string& address : addresses) {
            const auto url = URL::parse(address);
            if (!url) throw nb::value_error(("'" + address + "' is no address").c_str());
            urls.push_back(*url);
        }
        return urls;
    }

    PictureDownloads downloads_;
};

}  // namespace

void addBatches(nb::module_& module) {
    module.def("draw_rows", drawRows, nb::arg("count"), nb::arg("document"), nb::arg("model").none(),
               nb::arg("options"), nb::arg("columns"));
    module.def("row_pictures", rowPictures, nb::arg("count"), nb::arg("document"), nb::arg("model").none(),
               nb::arg("options"), nb::arg("columns"));
    nb::class_<Downloads>(module, "Downloads", nb::is_final())
        .def(nb::init<const std::vector<std::string>&, const nb::dict&>(), nb::arg("addresses"), nb::arg("options"))
        .def("next", &Downloads::next);
}

}  // namespace tavrin::python
