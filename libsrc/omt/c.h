// SPDX-License-Identifier: Apache-2.0
// libomt for C and for all languages that can call it: the binary interface that stays.
//
// Handles are opaque. What a function makes belongs to the caller, who gives it back to the
// function named like it with "free"; null may be given to all of these. Texts end with a zero
// octet, are UTF-8, and belong to the caller, who frees them with omt_free(). Handles do not depend
// on each other: a type works after its codec was freed. Any number of threads may use one handle.
//
// Functions that can fail return a status, and a sentence for people through `error`, which may be
// null; results are then null or 0. No argument may be null but where it says so.
#pragma once

#include "omt/base/export.h"
#include "omt/columns/arrow.h"

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C"
{
#endif

    typedef enum omt_status
    {
        OMT_OK = 0,
        /// Nothing has this name; the error has the nearest ones.
        OMT_UNKNOWN_NAME = 1,
        /// What was given is no value, or no column of octets or of values.
        OMT_NO_VALUE = 2,
        /// There is not enough memory.
        OMT_NO_MEMORY = 3,
        /// An argument is null or out of range.
        OMT_MISUSE = 4,
        /// A file cannot be written; the error says why.
        OMT_NO_FILE = 5
    } omt_status;

    typedef struct omt_model omt_model;
    typedef struct omt_codec omt_codec;
    typedef struct omt_type omt_type;
    typedef struct omt_columns omt_columns;
    typedef struct omt_update_writer omt_update_writer;

    /// "0.1.0"; not to be freed.
    OMT_EXPORT const char* omt_version(void);
    /// Frees a text or octets.
    OMT_EXPORT void omt_free(void* memory);

    // Models ------------------------------------------------------------------------------------

    /// A document in memory; findings call it by its name.
    typedef struct omt_document
    {
        const char* name;
        const void* octets;
        size_t size;
    } omt_document;

    /// Reads files and merges them in this order, with the standard MIM before them where `mim` is
    /// not 0. Fails for want of memory only: a file that cannot be read is a finding.
    OMT_EXPORT omt_status omt_read_files(const char* const* paths, size_t count, int mim,
                                         omt_model** model, char** error);
    /// The same for documents, which are not needed any more afterwards.
    OMT_EXPORT omt_status omt_read_documents(const omt_document* documents, size_t count, int mim,
                                             omt_model** model, char** error);
    OMT_EXPORT void omt_model_free(omt_model* model);
    /// 1 where no finding is an error, else 0.
    OMT_EXPORT int omt_model_is_sound(const omt_model* model);
    /// What was found, as a JSON array of {"severity", "name", "text", "file", "line", "other"},
    /// the last one {"file", "line"} where there is a second place.
    OMT_EXPORT omt_status omt_model_findings(const omt_model* model, char** json, char** error);

    // Values ------------------------------------------------------------------------------------

    /// Compiles all datatypes of a model.
    OMT_EXPORT omt_status omt_codec_new(const omt_model* model, omt_codec** codec, char** error);
    OMT_EXPORT void omt_codec_free(omt_codec* codec);
    /// What cannot be decoded and why, as omt_model_findings() has it.
    OMT_EXPORT omt_status omt_codec_findings(const omt_codec* codec, char** json, char** error);
    /// The datatype of an attribute or parameter, "BaseEntity.Spatial".
    OMT_EXPORT omt_status omt_find_member(const omt_codec* codec, const char* path, omt_type** type,
                                          char** error);
    /// A datatype by its name.
    OMT_EXPORT omt_status omt_find_type(const omt_codec* codec, const char* name, omt_type** type,
                                        char** error);
    OMT_EXPORT void omt_type_free(omt_type* type);

    /// Decodes one value to {"value", "octets", "left", "faults", "notes"}: the value as far as it
    /// was decoded (no key where that is nothing), how many octets it took and how many are left
    /// over; a fault is {"what", "path", "offset", "needed", "left"}, a note the first three.
    /// OMT_OK for a value with a fault too.
    OMT_EXPORT omt_status omt_decode_json(const omt_type* type, const void* octets, size_t size,
                                          char** json, char** error);
    /// Encodes a value of JSON. OMT_NO_VALUE where it is none; the error then says where and why.
    OMT_EXPORT omt_status omt_encode_json(const omt_type* type, const char* json, size_t json_size,
                                          void** octets, size_t* size, char** error);

    // Columns -----------------------------------------------------------------------------------

    typedef enum omt_labels
    {
        OMT_LABELS_DICTIONARY = 0,
        OMT_LABELS_STRING = 1,
        OMT_LABELS_NUMBER = 2
    } omt_labels;

    /// The columns of a type; what they are is said in omt/columns/columns.h. Where `widen` is not
    /// 0, unsigned numbers become wider signed ones.
    OMT_EXPORT omt_status omt_columns_new(const omt_type* type, omt_labels labels, int widen,
                                          omt_columns** columns, char** error);
    OMT_EXPORT void omt_columns_free(omt_columns* columns);
    /// The types of decoded batches, a struct of "value" and "fault", and of encoded ones, a struct
    /// of "octets" and "fault". The caller releases them.
    OMT_EXPORT omt_status omt_columns_schema(const omt_columns* columns, struct ArrowSchema* schema,
                                             char** error);
    OMT_EXPORT omt_status omt_columns_encoded_schema(struct ArrowSchema* schema, char** error);
    /// Decodes a column of octets from row `*first` on into a batch, which the caller releases, and
    /// sets `*first` to the row after it; that is the length of the column, unless the batch would
    /// be too large. Neither `schema` nor `column` is released. OMT_NO_VALUE for a column that is
    /// none of octets or has wrong buffers; a row that is no value is null in the batch.
    OMT_EXPORT omt_status omt_decode_column(const omt_columns* columns,
                                            const struct ArrowSchema* schema,
                                            const struct ArrowArray* column, size_t* first,
                                            struct ArrowArray* batch, char** error);
    /// Encodes a column of values in the same way.
    OMT_EXPORT omt_status omt_encode_column(const omt_columns* columns,
                                            const struct ArrowSchema* schema,
                                            const struct ArrowArray* column, size_t* first,
                                            struct ArrowArray* batch, char** error);

    // Recordings --------------------------------------------------------------------------------

    typedef enum omt_update_kind
    {
        OMT_KIND_UPDATE = 0,
        OMT_KIND_INTERACTION = 1,
        OMT_KIND_DISCOVER = 2,
        OMT_KIND_REMOVE = 3
    } omt_update_kind;

    /// One attribute or parameter; `octets` may be null where `size` is 0.
    typedef struct omt_member_value
    {
        uint64_t member;
        const void* octets;
        size_t size;
    } omt_member_value;

    /// What was received at once: all attributes of a reflection, or all parameters of an
    /// interaction. Handles are numbers that a federate makes of those of its RTI.
    typedef struct omt_update
    {
        omt_update_kind kind;
        /// In the unit of the federation's time.
        double time;
        /// The name of the object instance; may be null, as it is for an interaction.
        const char* object;
        uint64_t class_handle;
        /// The federate that sent it; may be null.
        const char* sender;
        /// The user-supplied tag; may be null.
        const void* tag;
        size_t tag_size;
        /// None, and then null, for an object that was discovered or removed.
        const omt_member_value* values;
        size_t value_count;
    } omt_update;

    /// Opens a recording in CSV to append to, and makes it where there is none. OMT_NO_FILE where
    /// that cannot be done.
    OMT_EXPORT omt_status omt_update_writer_new(const char* file, omt_update_writer** writer,
                                                char** error);
    OMT_EXPORT void omt_update_writer_free(omt_update_writer* writer);
    /// The name of a class, whole or any end of it that means one class.
    OMT_EXPORT omt_status omt_name_class(omt_update_writer* writer, uint64_t class_handle,
                                         const char* name, char** error);
    /// The name of an attribute or parameter, for this class only.
    OMT_EXPORT omt_status omt_name_member(omt_update_writer* writer, uint64_t class_handle,
                                          uint64_t member, const char* name, char** error);
    /// Appends a row for each value, or one where there is none. All of them reach the file
    /// together, or none: OMT_NO_FILE where the disk takes no more. Later calls try again.
    OMT_EXPORT omt_status omt_write_update(omt_update_writer* writer, const omt_update* update,
                                           char** error);

#ifdef __cplusplus
}
#endif
