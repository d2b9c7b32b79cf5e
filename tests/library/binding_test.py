#!/usr/bin/env python3
"""A binding that cffi makes of the C header alone gets a camera's picture: binding_test.py SERVER_PROGRAM LIBRARY"""

import ctypes
import pathlib
import subprocess
import sys
import tempfile
import unittest

import cffi

ROOT = pathlib.Path(__file__).parent.parent.parent
sys.path.insert(0, str(ROOT / "tests/apps/camera_server"))
from camera_server import Server, is_whole  # noqa: E402

LIBRARY = sys.argv[1]
HEADER = ROOT / "include/orbelcast/orbelcast.h"
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


class BindingTest(unittest.TestCase):
    def test_a_picture(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        ffi, c = binding(pathlib.Path(folder.name))

        def obtained(kind, function, *arguments):
            found = ffi.new("void**")
            self.assertEqual(function(*arguments, found), c.ORBELCAST_S_OK)
            return ffi.cast(f"Orbelcast{kind}*", found[0])

        def invoke(member, *values):
            name, member_id, result = ffi.new("char[]", member), ffi.new("int32_t*"), ffi.new("OrbelcastVariant*")
            viewer.functions.GetIDsOfNames(viewer, ffi.new("char*[]", [name]), 1, member_id)
            given = ffi.new("OrbelcastVariant[]", list(values))
            arguments = ffi.new("OrbelcastArguments*", {"values": given, "count": len(given)})
            self.assertEqual(viewer.functions.Invoke(viewer, member_id[0], c.ORBELCAST_METHOD, arguments, result,
                                                     ffi.NULL), c.ORBELCAST_S_OK)
            return result

        def guid(name):
            return ffi.new("OrbelcastGuid*", getattr(c, f"ORBELCAST_{name}"))

        address = ctypes.cast(ctypes.CDLL(LIBRARY).DllGetClassObject, ctypes.c_void_p).value
        entry = ffi.cast("OrbelcastGetClassObjectFunction*", address)
        self.assertEqual(entry(ffi.NULL, ffi.NULL, ffi.NULL), c.ORBELCAST_E_POINTER)
        factory = obtained("IClassFactory", entry, guid("VIDEO_SERVER_PUSH_CLASS"), guid("ICLASSFACTORY_ID"))
        viewer = obtained("IDispatch", factory.functions.CreateInstance, factory, ffi.NULL, guid("IDISPATCH_ID"))
        with Server() as server:
            url = ffi.new("char[]", b"http://127.0.0.1:%d/live/1" % server.port)
            invoke(b"Connect", {"type": c.ORBELCAST_TEXT, "size": len(url) - 1, "text": url})
            jpeg = invoke(b"GetPictureArray")
            self.assertTrue(jpeg.type == c.ORBELCAST_BYTES and is_whole(ffi.buffer(jpeg.bytes, jpeg.size)[:]))
        for held in (jpeg.owner, viewer, factory):
            held.functions.Release(held)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
