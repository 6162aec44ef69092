// SPDX-License-Identifier: MIT
#pragma once

namespace tavrin {

/// What may be fetched for the addresses that a document names.
enum class FetchPolicy : unsigned char {
    /// Nothing: no request is made and no file is read.
    none,
    /// What `http` and `https` servers with a public address give. The machine itself, private networks and what else
    /// is
    /// not the public Internet are refused once their names are resolved, also behind a redirect; proxies are not used.
    publicOnly,
    /// Everything, `file` too, as on the phone.
    all,
};

}  // namespace tavrin
