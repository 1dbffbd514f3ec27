#pragma once

#include "model/DocItem.h"

#include <memory>

/// A document as the store holds it. Shared so that a running background task's completion can still
/// write to a document the user has removed meanwhile; only the main thread ever holds one.
using DocPtr = std::shared_ptr<DocItem>;
