// SPDX-License-Identifier: Apache-2.0
// The two structs of the Arrow C data interface, by which libraries hand columns to each other
// without a copy. For C and C++; may be included together with any other header that has them.
#pragma once

#include <stdint.h>

/* The names that everybody who writes these structs out uses, so that they are there once. */
#ifndef ARROW_C_DATA_INTERFACE
#define ARROW_C_DATA_INTERFACE

/* Bits of ArrowSchema::flags. */
#define ARROW_FLAG_DICTIONARY_ORDERED 1
#define ARROW_FLAG_NULLABLE 2
#define ARROW_FLAG_MAP_KEYS_SORTED 4

#ifdef __cplusplus
extern "C"
{
#endif

    /* The type of a column. Whoever holds it calls release(), where that is not null, once. */
    struct ArrowSchema
    {
        /* "l" for 64-bit integers, "u" for texts, "+s" for records, and so on. */
        const char* format;
        const char* name;
        const char* metadata;
        int64_t flags;
        int64_t n_children;
        struct ArrowSchema** children;
        /* The type of the labels where the column holds places in a table of labels. */
        struct ArrowSchema* dictionary;
        /* Frees all of it, children too, and sets itself to null. */
        void (*release)(struct ArrowSchema*);
        void* private_data;
    };

    /* The rows of a column; the type says which buffers there are and what they hold. */
    struct ArrowArray
    {
        int64_t length;
        /* -1 where nobody has counted. */
        int64_t null_count;
        /* The rows of the buffers that stand before the first one of the column. */
        int64_t offset;
        int64_t n_buffers;
        int64_t n_children;
        const void** buffers;
        struct ArrowArray** children;
        struct ArrowArray* dictionary;
        void (*release)(struct ArrowArray*);
        void* private_data;
    };

#ifdef __cplusplus
}
#endif

#endif
