"""A host in Python: host.py LIBRARY ADDRESS FILE connects a viewer to a camera and saves its picture."""

import sys
import uuid
from ctypes import (CDLL, CFUNCTYPE, POINTER, Structure, Union, byref, c_char_p, c_int16, c_int32, c_uint16, c_uint32,
                    c_void_p, cast, pointer)

LONG, TEXT, REFERENCE = 3, 8, 0x400C
METHOD, GET, PUT = 1, 2, 4


class Value(Union):
    _fields_ = [("i16", c_int16), ("i32", c_int32), ("text", c_char_p), ("reference", c_void_p)]


class Variant(Structure):
    _anonymous_ = ["value"]
    _fields_ = [("type", c_uint16), ("reserved", c_uint16), ("size", c_uint32), ("value", Value), ("owner", c_void_p)]


class Arguments(Structure):
    _fields_ = [("values", POINTER(Variant)), ("count", c_uint32), ("named_count", c_uint32), ("names", c_void_p)]


def guid(text):
    return uuid.UUID(text).bytes_le


def call(this, slot, *arguments):
    """Calls a function of an interface's table: 0 to 2 are QueryInterface, AddRef, Release, then its own."""
    table = cast(this, POINTER(POINTER(c_void_p)))[0]
    return CFUNCTYPE(c_int32)(table[slot])(this, *arguments)


def query(this, interface):
    found = c_void_p()
    call(this, 0, guid(interface), byref(found))
    return found


def invoke(dispatch, name, kind, *values):
    names, member, result = (c_char_p * 1)(name.encode()), c_int32(), Variant()
    call(dispatch, 3, names, 1, byref(member))
    arguments = Arguments((Variant * len(values))(*values), len(values))
    call(dispatch, 4, member, kind, byref(arguments), byref(result), None)
    return result


def text(string):
    return Variant(TEXT, size=len(string.encode()), text=string.encode())


class Sink:
    """Four functions in a table: what the viewer sees of an event sink."""

    def __init__(self, told):
        self.functions = [CFUNCTYPE(c_int32, c_void_p, c_void_p, c_void_p)(lambda this, interface, found: -1),
                          CFUNCTYPE(c_uint32, c_void_p)(lambda this: 1), CFUNCTYPE(c_uint32, c_void_p)(lambda this: 1),
                          CFUNCTYPE(c_int32, c_void_p, c_int32, POINTER(Arguments))(
                              lambda this, event, arguments: told(event, arguments[0]) or 0)]
        self.table = (c_void_p * 4)(*[cast(function, c_void_p) for function in self.functions])
        self.object = pointer(pointer(self.table))


def watch(library, address, file):
    factory, viewer, point, cookie = c_void_p(), c_void_p(), c_void_p(), c_uint32()
    library.DllGetClassObject(guid("9056793e-ad07-40a0-81ff-b1a1103716f6"),
                              guid("97c4f441-44bb-482e-8766-dbf7d32ce656"), byref(factory))
    call(factory, 3, None, guid("17ed370c-faa1-454c-87e7-8782469917f5"), byref(viewer))  # IDispatch
    services = query(viewer, "caa8d289-6515-41c0-a0ae-7ef0d3d54777")  # IHostServices
    points = query(viewer, "40251869-5a8a-44b1-a7f6-af232a4ac6f9")  # IConnectionPointContainer

    events = []
    sink = Sink(lambda event, arguments: events.append(event))
    call(points, 3, guid("760451e3-6366-4863-97e5-37b2e094ead4"), byref(point))  # the viewer's events
    call(point, 3, sink.object, byref(cookie))

    rate = Variant(LONG, i32=40)
    invoke(viewer, "FrameRate", PUT, Variant(REFERENCE, reference=cast(pointer(rate), c_void_p)))
    print("FrameRate:", rate.i32)  # 30, the most that a viewer does
    invoke(viewer, "Connect", METHOD, text(address))
    while not {1, 3} <= set(events):  # StreamInfo, Connected
        call(services, 3, 100)  # RunLoop
    print("Connected, StreamInfo")
    invoke(viewer, "SaveImage", METHOD, text(file))
    for held in (point, points, services, viewer, factory):
        call(held, 2)


if __name__ == "__main__":
    orbelcast = CDLL(sys.argv[1])
    watch(orbelcast, sys.argv[2], sys.argv[3])
    print("can unload:", "yes" if orbelcast.DllCanUnloadNow() == 0 else "no")
