// SPDX-License-Identifier: Apache-2.0
#include "dicts.h"

#include <charconv>
#include <cmath>

namespace nb = nanobind;

namespace omtpy
{

namespace
{

PyObject* checked(PyObject* object)
{
    if (!object) throw nb::python_error();
    return object;
}

nb::object textOf(std::string_view text)
{
    return nb::steal(checked(
        PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "surrogatepass")));
}

/// Builds objects in the order of the visit.
class Builder : public omt::Visitor
{
public:
    explicit Builder(Names& names) : myNames(names) {}

    void beginRecord(std::string_view) override { open(PyDict_New(), false); }
    void endRecord() override { close(); }
    void beginArray(std::size_t) override { open(PyList_New(0), true); }
    void endArray() override { close(); }
    void field(std::string_view name) override { myFrames.back().key = myNames.key(name); }
    void integer(std::int64_t number, bool isUnsigned) override
    {
        put(isUnsigned ? PyLong_FromUnsignedLongLong(static_cast<unsigned long long>(number))
                       : PyLong_FromLongLong(number));
    }
    void number(double number) override { put(PyFloat_FromDouble(number)); }
    void label(std::string_view name, std::int64_t number) override
    {
        PyObject* const found = myNames.label(name, number);
        Py_INCREF(found);
        put(found);
    }
    void text(std::string_view text) override { put(textOf(text).release().ptr()); }
    void octets(omt::Octets octets) override
    {
        put(PyBytes_FromStringAndSize(reinterpret_cast<const char*>(octets.data()),
                                      static_cast<Py_ssize_t>(octets.size())));
    }

    nb::object take() { return myRoot.is_valid() ? std::move(myRoot) : nb::none(); }

private:
    struct Frame
    {
        nb::object container;
        bool isList;
        PyObject* key;
    };

    void open(PyObject* container, bool isList)
    {
        myFrames.push_back({nb::steal(checked(container)), isList, nullptr});
    }
    void close()
    {
        nb::object whole = std::move(myFrames.back().container);
        myFrames.pop_back();
        put(whole.release().ptr());
    }
    void put(PyObject* made)
    {
        nb::object object = nb::steal(checked(made));
        if (myFrames.empty())
        {
            myRoot = std::move(object);
            return;
        }
        const Frame& frame = myFrames.back();
        PyObject* const to = frame.container.ptr();
        const int status = frame.isList ? PyList_Append(to, object.ptr())
                                        : PyDict_SetItem(to, frame.key, object.ptr());
        if (status != 0) throw nb::python_error();
    }

    Names& myNames;
    std::vector<Frame> myFrames;
    nb::object myRoot;
};

// To JSON ----------------------------------------------------------------------------------------

constexpr char theHexadecimal[] = "0123456789abcdef";

/// Writes objects, nested as deep as values may be.
class Writer
{
public:
    explicit Writer(std::string& json) : myJson(json), myEnumerator(typeNamed("Enumerator")) {}

    void write(nb::handle object, unsigned depth)
    {
        constexpr unsigned theDeepest = 250;
        if (depth > theDeepest) throw nb::value_error("values are nested too deep");
        PyObject* const it = object.ptr();
        if (PyUnicode_Check(it))
            text(object);
        else if (PyBool_Check(it))
            myJson += it == Py_True ? "true" : "false";
        else if (PyFloat_Check(it))
            real(PyFloat_AsDouble(it));
        else if (PyDict_Check(it))
            record(object, depth);
        else if (PyList_Check(it) || PyTuple_Check(it))
            array(object, depth);
        else if (it == Py_None)
            myJson += "null";
        else if (PyIndex_Check(it))
            myJson += nb::cast<const char*>(nb::str(nb::steal(checked(PyNumber_Index(it)))));
        else
            octets(object);
    }

private:
    void record(nb::handle object, unsigned depth)
    {
        const char* before = "{";
        for (const auto& [key, value] : nb::borrow<nb::dict>(object))
        {
            if (!PyUnicode_Check(key.ptr())) throw nb::type_error("names of fields are texts");
            myJson += before;
            before = ",";
            quote(key);
            myJson += ':';
            write(value, depth + 1);
        }
        myJson += *before == '{' ? "{}" : "}";
    }

    void array(nb::handle object, unsigned depth)
    {
        const char* before = "[";
        for (nb::handle one : object)
        {
            myJson += before;
            before = ",";
            write(one, depth + 1);
        }
        myJson += *before == '[' ? "[]" : "]";
    }

    // An enumerator may be the second number of its name.
    void text(nb::handle object)
    {
        if (!nb::isinstance(object, myEnumerator)) return quote(object);
        myJson += "{\"name\":";
        quote(object);
        myJson += ",\"value\":";
        write(object.attr("value"), 0);
        myJson += '}';
    }

    void quote(nb::handle object)
    {
        const nb::object utf8 =
            nb::steal(checked(PyUnicode_AsEncodedString(object.ptr(), "utf-8", "surrogatepass")));
        const auto* const data =
            reinterpret_cast<const unsigned char*>(PyBytes_AsString(utf8.ptr()));
        const auto size = static_cast<std::size_t>(PyBytes_Size(utf8.ptr()));
        myJson += '"';
        for (std::size_t i = 0; i < size; ++i)
        {
            const bool isHalf = data[i] == 0xED && i + 2 < size && (data[i + 1] & 0x20) != 0;
            if (isHalf)
            {
                escape(0xD000U | (data[i + 1] & 0x3FU) << 6 | (data[i + 2] & 0x3FU));
                i += 2;
            }
            else if (data[i] < 0x20)
                escape(data[i]);
            else
            {
                if (data[i] == '"' || data[i] == '\\') myJson += '\\';
                myJson += static_cast<char>(data[i]);
            }
        }
        myJson += '"';
    }

    void escape(unsigned code)
    {
        myJson += "\\u";
        for (unsigned shift = 16; shift > 0; shift -= 4)
            myJson += theHexadecimal[code >> (shift - 4) & 15];
    }

    void real(double number)
    {
        constexpr std::size_t theLongest = 40;
        char room[theLongest];
        if (std::isnan(number))
            myJson += "\"NaN\"";
        else if (std::isinf(number))
            myJson += number < 0 ? "\"-Infinity\"" : "\"Infinity\"";
        else
            myJson.append(room, std::to_chars(room, room + theLongest, number).ptr);
    }

    void octets(nb::handle object)
    {
        Py_buffer view;
        if (PyObject_GetBuffer(object.ptr(), &view, PyBUF_SIMPLE) != 0) throw nb::python_error();
        const auto* const data = static_cast<const unsigned char*>(view.buf);
        myJson += '"';
        for (Py_ssize_t i = 0; i < view.len; ++i)
        {
            myJson += theHexadecimal[data[i] >> 4];
            myJson += theHexadecimal[data[i] & 15];
        }
        myJson += '"';
        PyBuffer_Release(&view);
    }

    std::string& myJson;
    nb::object myEnumerator;
};

}  // namespace

nb::object typeNamed(const char* name)
{
    return nb::module_::import_("omtreader._types").attr(name);
}

Names::Names() : myEnumerator(typeNamed("Enumerator")) {}

PyObject* Names::key(std::string_view name)
{
    nb::object& found = myKeys[name.data()];
    if (found.is_valid()) return found.ptr();
    PyObject* text = textOf(name).release().ptr();
    PyUnicode_InternInPlace(&text);
    found = nb::steal(text);
    return text;
}

PyObject* Names::label(std::string_view name, std::int64_t number)
{
    nb::object& found = myLabels[name.data()];
    if (!found.is_valid()) found = myEnumerator(textOf(name), number);
    return found.ptr();
}

nb::object toPython(const omt::Value& value, Names& names)
{
    Builder builder(names);
    value.visit(builder);
    return builder.take();
}

void appendJson(nb::handle object, std::string& json)
{
    Writer(json).write(object, 0);
}

}  // namespace omtpy
