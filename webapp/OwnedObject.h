// OwnedObject.h: owners of objects and errors that a call of GTK or WebKit hands over fully.
#pragma once

#include "util/Owned.h"

#include <glib-object.h>

/// A GObject.
template <typename T> using OwnedObject = std::unique_ptr<T, ReleaseWith<g_object_unref>>;

/// An error.
using OwnedError = std::unique_ptr<GError, ReleaseWith<g_error_free>>;
