// OwnedObject.h: owner of a GObject that a call gave fully.
#pragma once

#include "util/Owned.h"

#include <glib-object.h>

template <typename T> using OwnedObject = std::unique_ptr<T, ReleaseWith<g_object_unref>>;
