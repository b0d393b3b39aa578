// What leaves a shared library; everything else is built with hidden visibility.
#pragma once

// A class, a function, or by `namespace QOS_EXPORT host {` all that a block declares.
#define QOS_EXPORT [[gnu::visibility("default")]]
// Within something exported, what stays inside.
#define QOS_LOCAL [[gnu::visibility("hidden")]]
