#pragma once

#include <memory>

/// Deletes a C library's handle with the library's own release function `Free` (`heif_context_free`,
/// `zip_discard`, or a function of ours when releasing takes more than one call). std::unique_ptr never
/// calls it with null.
template <auto Free> struct CDeleter {
    template <class T> void operator()(T *handle) const { Free(handle); }
};

/// A move-only owner of a `T *` released with `Free`.
template <class T, auto Free> using CHandle = std::unique_ptr<T, CDeleter<Free>>;
