#!/usr/bin/env python3
"""A binding that cffi makes of the C header alone makes a viewer and asks it for a member: binding_test.py LIBRARY"""

import ctypes
import pathlib
import subprocess
import sys
import tempfile

import cffi

LIBRARY = sys.argv[1]
HEADER = pathlib.Path(__file__).parents[2] / "include/orbelcast/orbelcast.h"
CODES = ("ORBELCAST_S_OK", "ORBELCAST_E_POINTER")


def binding(folder):
    """A module of every type and constant of the header, as cffi's parser and the C compiler read it."""
    (folder / "stdint.h").touch()  # its types are cffi's own
    declarations = subprocess.run(["cc", "-E", "-P", "-nostdinc", f"-I{folder}", HEADER], capture_output=True, text=True,
                                  check=True).stdout
    (folder / "stdint.h").unlink()
    maker = cffi.FFI()
    maker.cdef(declarations + "\n".join(f"#define {name} ..." for name in CODES))
    maker.set_source("orbelcast_binding", f'#include "{HEADER}"')
    maker.compile(str(folder))
    sys.path.insert(0, str(folder))
    import orbelcast_binding
    return orbelcast_binding.ffi, orbelcast_binding.lib


with tempfile.TemporaryDirectory() as made:
    ffi, c = binding(pathlib.Path(made))
for name in ffi.list_types()[1]:
    ffi.sizeof(f"struct {name}")  # fails where the compiler lays it out in another way


def obtained(kind, function, *arguments):
    found = ffi.new("void**")
    assert function(*arguments, found) == c.ORBELCAST_S_OK
    return ffi.cast(f"Orbelcast{kind}*", found[0])


def guid(name):
    return ffi.new("OrbelcastGuid*", getattr(c, f"ORBELCAST_{name}"))


address = ctypes.cast(ctypes.CDLL(LIBRARY).DllGetClassObject, ctypes.c_void_p).value
entry = ffi.cast("OrbelcastGetClassObjectFunction*", address)
assert entry(ffi.NULL, ffi.NULL, ffi.NULL) == c.ORBELCAST_E_POINTER
factory = obtained("IClassFactory", entry, guid("VIDEO_SERVER_PUSH_CLASS"), guid("ICLASSFACTORY_ID"))
viewer = obtained("IDispatch", factory.functions.CreateInstance, factory, ffi.NULL, guid("IDISPATCH_ID"))
member, member_id = ffi.new("char[]", b"FrameRate"), ffi.new("int32_t*")
assert viewer.functions.GetIDsOfNames(viewer, ffi.new("char*[]", [member]), 1, member_id) == c.ORBELCAST_S_OK
result = ffi.new("OrbelcastVariant*")
assert viewer.functions.Invoke(viewer, member_id[0], c.ORBELCAST_PROPERTY_GET, ffi.NULL, result,
                               ffi.NULL) == c.ORBELCAST_S_OK
assert (result.type, result.i16) == (c.ORBELCAST_INTEGER, 1)
