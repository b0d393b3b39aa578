// Marks what leaves the shared library. Everything else is built with hidden visibility.
#pragma once

#define QOS_EXPORT __attribute__((visibility("default")))
