// Marks what the shared library exports; everything else is built with hidden visibility.
#ifndef HEARTH_EXPORT_H
#define HEARTH_EXPORT_H

#if defined(__GNUC__)
#define HEARTH_API __attribute__((visibility("default")))
#else
#define HEARTH_API
#endif

#endif
