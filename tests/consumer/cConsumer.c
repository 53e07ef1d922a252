/* SPDX-License-Identifier: Apache-2.0 */
/* A host in C: reads a model, decodes a value and a column, encodes both, records updates, and
 * makes mistakes. */
#include <omt/c.h>
#include <stdio.h>
#include <string.h>

static const char theModel[] =
    "<objectModel xmlns='http://standards.ieee.org/IEEE1516-2010'><objects><objectClass>"
    "<name>HLAobjectRoot</name><objectClass><name>Ship</name><attribute><name>Place</name>"
    "<dataType>Place</dataType></attribute></objectClass></objectClass></objects><dataTypes>"
    "<fixedRecordDataTypes><fixedRecordData><name>Place</name><encoding>HLAfixedRecord</encoding>"
    "<field><name>X</name><dataType>HLAinteger16BE</dataType></field>"
    "<field><name>Y</name><dataType>HLAinteger16BE</dataType></field>"
    "</fixedRecordData></fixedRecordDataTypes></dataTypes></objectModel>";

static int theFaults = 0;

static void expect(int isRight, const char* what)
{
    if (isRight) return;
    fprintf(stderr, "wrong: %s\n", what);
    ++theFaults;
}

static void keep(struct ArrowSchema* schema)
{
    schema->release = NULL;
}

static void keepArray(struct ArrowArray* array)
{
    array->release = NULL;
}

static void convertColumn(const omt_type* type)
{
    const unsigned char octets[] = {0, 1, 0, 2, 0, 3, 0, 4, 9};
    const int32_t offsets[] = {0, 4, 8, 9};
    const void* buffers[] = {NULL, offsets, octets};
    struct ArrowSchema schema = {.format = "z", .name = "", .release = keep};
    struct ArrowArray column = {
        .length = 3, .n_buffers = 3, .buffers = buffers, .release = keepArray};
    struct ArrowArray batch, again;
    struct ArrowSchema decoded;
    omt_columns* columns = NULL;
    size_t first = 0;
    expect(omt_columns_new(type, OMT_LABELS_STRING, 0, &columns, NULL) == OMT_OK, "columns");
    expect(omt_columns_schema(columns, &decoded, NULL) == OMT_OK, "schema");
    expect(omt_decode_column(columns, &schema, &column, &first, &batch, NULL) == OMT_OK, "decode");
    expect(first == 3 && batch.length == 3, "rows");
    expect(batch.children[0]->null_count == 1 && batch.children[1]->null_count == 2, "one fault");
    expect(((const int16_t*)batch.children[0]->children[1]->buffers[1])[1] == 4, "a number");
    first = 0;
    expect(omt_encode_column(columns, decoded.children[0], batch.children[0], &first, &again,
                             NULL) == OMT_OK,
           "encode");
    expect(memcmp(again.children[0]->buffers[2], octets, 8) == 0, "the same octets");
    again.release(&again);
    batch.release(&batch);
    first = 4;
    expect(omt_decode_column(columns, &schema, &column, &first, &batch, NULL) == OMT_NO_VALUE &&
               batch.release == NULL,
           "a row too far");
    expect(omt_columns_new(type, (omt_labels)7, 0, &columns, NULL) == OMT_MISUSE, "labels");
    decoded.release(&decoded);
    omt_columns_free(columns);
}

static void recordUpdates(const char* file)
{
    const unsigned char octets[] = {0, 1, 0, 2};
    const omt_member_value values[] = {
        {5, octets, sizeof octets},
        {6, NULL,   0            }
    };
    omt_update update = {.kind = OMT_KIND_UPDATE,
                         .time = 1.5,
                         .object = "Tug, 1",
                         .class_handle = 7,
                         .values = values,
                         .value_count = 2};
    const char expected[] =
        "time,event,kind,object,class,member,octets,sender,tag\n"
        "1.5,1,update,\"Tug, 1\",Ship,Place,00010002,,\n"
        "1.5,1,update,\"Tug, 1\",Ship,#6,,,\n";
    char written[sizeof expected + 1];
    omt_update_writer* writer = NULL;
    char* text = NULL;
    FILE* read;
    expect(omt_update_writer_new("/there/is/no.csv", &writer, &text) == OMT_NO_FILE && !writer &&
               strstr(text, "/there/is/no.csv"),
           "no folder");
    omt_free(text);
    remove(file);
    expect(omt_update_writer_new(file, &writer, NULL) == OMT_OK, "a recording");
    expect(omt_name_class(writer, 7, "Ship", NULL) == OMT_OK, "a class");
    expect(omt_name_member(writer, 7, 5, "Place", NULL) == OMT_OK, "a member");
    expect(omt_write_update(writer, &update, NULL) == OMT_OK, "an update");
    update.values = NULL;
    expect(omt_write_update(writer, &update, NULL) == OMT_MISUSE, "no values");
    omt_update_writer_free(writer);
    read = fopen(file, "rb");
    written[read ? fread(written, 1, sizeof written, read) : 0] = '\0';
    if (read) fclose(read);
    expect(strcmp(written, expected) == 0, "the rows of an update");
    remove(file);
}

int main(void)
{
    const omt_document document = {"ship.xml", theModel, sizeof theModel - 1};
    const unsigned char octets[] = {0, 1, 0, 2, 5};
    const char json[] = "{\"X\":1,\"Y\":2}";
    const char* missing[] = {"there/is/none.xml"};
    omt_model* model = NULL;
    omt_codec* codec = NULL;
    omt_type* type = NULL;
    char* text = NULL;
    void* encoded = NULL;
    size_t size = 0;

    expect(omt_read_files(missing, 1, 0, &model, NULL) == OMT_OK && !omt_model_is_sound(model),
           "a file that is not there");
    expect(omt_model_findings(model, &text, NULL) == OMT_OK && strstr(text, "none.xml"), "finding");
    omt_free(text);
    omt_model_free(model);
    expect(omt_read_documents(&document, 1, 1, &model, NULL) == OMT_OK && omt_model_is_sound(model),
           "a model");
    expect(omt_codec_new(model, &codec, NULL) == OMT_OK, "a codec");
    omt_model_free(model);
    expect(omt_find_type(codec, "Plaice", &type, &text) == OMT_UNKNOWN_NAME && type == NULL &&
               strstr(text, "Place"),
           "a name that is nearly right");
    omt_free(text);
    expect(omt_find_member(codec, "Ship.Place", &type, NULL) == OMT_OK, "an attribute");
    omt_codec_free(codec);
    expect(omt_decode_json(type, octets, sizeof octets, &text, NULL) == OMT_OK &&
               strcmp(text,
                      "{\"value\":{\"X\":1,\"Y\":2},\"octets\":4,\"left\":1,\"faults\":[],"
                      "\"notes\":[]}") == 0,
           "a value");
    omt_free(text);
    expect(omt_decode_json(type, octets, 3, &text, NULL) == OMT_OK &&
               strstr(text, "\"path\":\"Y\",\"offset\":2,\"needed\":2,\"left\":1"),
           "a fault");
    omt_free(text);
    expect(omt_encode_json(type, json, sizeof json - 1, &encoded, &size, NULL) == OMT_OK &&
               size == 4 && memcmp(encoded, octets, 4) == 0,
           "octets");
    omt_free(encoded);
    expect(omt_encode_json(type, "{}", 2, &encoded, &size, &text) == OMT_NO_VALUE && size == 0 &&
               strstr(text, "missing"),
           "no value");
    omt_free(text);
    expect(omt_encode_json(type, NULL, 0, &encoded, &size, NULL) == OMT_MISUSE, "no text");
    convertColumn(type);
    recordUpdates("omtFromC.csv");
    omt_type_free(type);
    if (theFaults == 0) printf("libomt %s from C\n", omt_version());
    return theFaults == 0 ? 0 : 1;
}
