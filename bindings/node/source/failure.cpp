// SPDX-License-Identifier: MIT
#include "bindings/node/source/failure.h"

#include "tavrin/doors/open_document.h"

namespace tavrin::addon {

Failure failureOf(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const OptionError& e) {
        return {e, {}};
    } catch (const CallError& e) {
        return {std::nullopt, toJSON(e.description)};
    } catch (...) {
        return {std::nullopt, toJSON(describeError(error))};
    }
}

Napi::Value toValue(Napi::Env env, const Failure& failure) {
    if (!failure.option) return Napi::String::New(env, failure.json);
    const OptionError& fault = *failure.option;
    Napi::Error error = fault.fault == OptionFault::value ? Napi::Error(Napi::RangeError::New(env, fault.what()))
                                                          : Napi::Error(Napi::TypeError::New(env, fault.what()));
    error.Value().Set("option", fault.option);
    return error.Value();
}

}  // namespace tavrin::addon
