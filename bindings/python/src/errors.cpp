// SPDX-License-Identifier: MIT
#include "bindings/python/src/errors.h"

#include <exception>
#include <string>

#include <nanobind/nanobind.h>

#include "tavrin/doors/error_description.h"
#include "tavrin/doors/open_document.h"
#include "tavrin/doors/option_error.h"

namespace nb = nanobind;

namespace tavrin::python {
namespace {

/// A message may quote what is not UTF-8.
nb::object textOf(const std::string& message) {
    return nb::steal(PyUnicode_DecodeUTF8(message.data(), static_cast<Py_ssize_t>(message.size()), "replace"));
}

void translate(const std::exception_ptr& thrown, void*) {
    try {
        std::rethrow_exception(thrown);
    } catch (const CallError& error) {
        const std::string members = toJSON(error.description);
        const nb::object made = nb::module_::import_("tavrin._errors").attr("error_of")(members.c_str());
        PyErr_SetObject(made.type().ptr(), made.ptr());
    } catch (const OptionError& error) {
        PyObject* const type = error.fault == OptionFault::value ? PyExc_ValueError : PyExc_TypeError;
        PyErr_SetObject(type, textOf(error.what()).ptr());
    }
}

}  // namespace

void translateErrors() { nb::register_exception_translator(translate); }

}  // namespace tavrin::python
