"""A host in Python: host.py LIBRARY ADDRESS FILE connects a viewer to a camera and saves its picture."""

import sys
import uuid
from ctypes import *

LONG, TEXT, REFERENCE = 3, 8, 0x400C
METHOD, PROPERTY_PUT = 1, 4


class Value(Union):
    _fields_ = [("i32", c_int32), ("text", c_char_p), ("reference", c_void_p)]


class Variant(Structure):
    _anonymous_ = ["value"]
    _fields_ = [("type", c_uint16), ("reserved", c_uint16), ("size", c_uint32), ("value", Value), ("owner", c_void_p)]


class Arguments(Structure):
    _fields_ = [("values", POINTER(Variant)), ("count", c_uint32), ("named_count", c_uint32), ("names", c_void_p)]


def call(this, slot, *arguments):
    """Calls a function of an object: 0 to 2 are QueryInterface, AddRef and Release, then come its interface's own."""
    return CFUNCTYPE(c_int32)(cast(this, POINTER(POINTER(c_void_p)))[0][slot])(this, *arguments)


def get(this, slot, *arguments):
    """Calls a function that gives an object; identifiers are texts."""
    found = c_void_p()
    call(this, slot, *[uuid.UUID(each).bytes_le if each else None for each in arguments], byref(found))
    return found


def invoke(dispatch, name, kind, value):
    member = c_int32()
    call(dispatch, 3, byref(c_char_p(name.encode())), 1, byref(member))  # GetIDsOfNames
    call(dispatch, 4, member, kind, byref(Arguments(pointer(value), 1)), None, None)  # Invoke


def text(string):
    return Variant(TEXT, size=len(string.encode()), text=string.encode())


events = []
SINK = [CFUNCTYPE(c_int32, c_void_p, c_void_p, c_void_p)(lambda this, interface, found: -1),  # QueryInterface: no other
        CFUNCTYPE(c_uint32, c_void_p)(lambda this: 1), CFUNCTYPE(c_uint32, c_void_p)(lambda this: 1),
        CFUNCTYPE(c_int32, c_void_p, c_int32, POINTER(Arguments))(lambda this, event, given: events.append(event) or 0)]
sink = pointer(pointer((c_void_p * 4)(*[cast(function, c_void_p) for function in SINK])))

library, factory, cookie, rate = CDLL(sys.argv[1]), c_void_p(), c_uint32(), Variant(LONG, i32=40)
library.DllGetClassObject(uuid.UUID("9056793e-ad07-40a0-81ff-b1a1103716f6").bytes_le,  # VideoServerPush
                          uuid.UUID("97c4f441-44bb-482e-8766-dbf7d32ce656").bytes_le, byref(factory))
viewer = get(factory, 3, None, "17ed370c-faa1-454c-87e7-8782469917f5")  # CreateInstance of IDispatch
services = get(viewer, 0, "caa8d289-6515-41c0-a0ae-7ef0d3d54777")  # IHostServices
points = get(viewer, 0, "40251869-5a8a-44b1-a7f6-af232a4ac6f9")  # IConnectionPointContainer
point = get(points, 3, "760451e3-6366-4863-97e5-37b2e094ead4")  # the viewer's events
call(point, 3, sink, byref(cookie))  # Advise

invoke(viewer, "FrameRate", PROPERTY_PUT, Variant(REFERENCE, reference=addressof(rate)))
print("FrameRate:", rate.i32)  # 30: a viewer asks for no more, and says so
invoke(viewer, "Connect", METHOD, text(sys.argv[2]))
for _ in range(50):
    if {1, 3} <= set(events):
        print("Connected, StreamInfo")
        break
    call(services, 3, 100)  # RunLoop, milliseconds
invoke(viewer, "SaveImage", METHOD, text(sys.argv[3]))

for held in (point, points, services, viewer, factory):
    call(held, 2)
print("can unload:", "yes" if library.DllCanUnloadNow() == 0 else "no")
