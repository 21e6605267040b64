#pragma once

#include "store/QuorlStore.h"
#include "store/RawLibrary.h"
#include "support/TempFolder.h"

#include <string>

namespace quorl::test {

// A library in a folder of its own, and another program's view of it.
struct StoreFile {
    TempFolder folder;
    const std::string path = (folder.path() / "quorl.sqlite").string();
    QuorlStore store{path};
    RawLibrary raw{path};
};

/// The text of the `StoreError` that `operation` throws; empty if it throws none.
template <class Operation>
std::string errorOf(Operation operation) {
    try {
        operation();
        return {};
    } catch (const StoreError& error) {
        return error.message();
    }
}

} // namespace quorl::test
