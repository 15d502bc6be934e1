// OwnedObject.h: owners of what a call of GTK or WebKit gave fully: a GObject, an error.
#pragma once

#include "util/Owned.h"

#include <glib-object.h>

template <typename T> using OwnedObject = std::unique_ptr<T, ReleaseWith<g_object_unref>>;

using OwnedError = std::unique_ptr<GError, ReleaseWith<g_error_free>>;
