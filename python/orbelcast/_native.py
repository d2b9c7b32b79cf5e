"""The library's binary interface: loading it, its structures, and calls of its objects' functions."""

from __future__ import annotations

import _ctypes
import ctypes
import functools
import os
import sys
import threading
import uuid
from ctypes import (CFUNCTYPE, POINTER, Structure, Union, byref, c_char_p, c_double, c_float, c_int16, c_int32, c_int64,
                    c_uint8, c_uint16, c_uint32, c_void_p)
from typing import Any, Callable, Dict, List, Optional

# Types of a variant's value.
EMPTY, NULL, INTEGER, LONG, SINGLE, DOUBLE, TEXT, MISSING, BOOLEAN, OBJECT, LONG_LONG = 0, 1, 2, 3, 4, 5, 8, 10, 11, 13, 20
BYTES, REFERENCE = 0x2011, 0x400C
# Kinds of a call.
METHOD, PROPERTY_GET, PROPERTY_PUT = 1, 2, 4

S_OK, S_FALSE = 0, 1
NO_INTERFACE = 0x80004002 - (1 << 32)


class _Value(Union):
    _fields_ = [("i16", c_int16), ("i32", c_int32), ("i64", c_int64), ("f32", c_float), ("f64", c_double),
                ("text", c_char_p), ("pointer", c_void_p)]


class Variant(Structure):
    """A value as it crosses the interface; `owner` keeps what it points to alive."""
    _anonymous_ = ["value"]
    _fields_ = [("type", c_uint16), ("reserved", c_uint16), ("size", c_uint32), ("value", _Value), ("owner", c_void_p)]


class Arguments(Structure):
    _fields_ = [("values", POINTER(Variant)), ("count", c_uint32), ("named_count", c_uint32), ("names", c_void_p)]


class PersistedProperty(Structure):
    _fields_ = [("key", c_char_p), ("key_size", c_uint32), ("text_size", c_uint32), ("text", c_char_p)]


class LoopDescriptor(Structure):
    _fields_ = [("descriptor", c_int32), ("readable", c_uint16), ("writable", c_uint16)]


def _guid(text: str) -> bytes:
    return uuid.UUID(text).bytes_le


CLASSES = {"VideoServerPush": _guid("9056793e-ad07-40a0-81ff-b1a1103716f6"),
           "UserControl1": _guid("118b9212-7be2-49c5-9881-31a34364f847")}
EVENTS = {"VideoServerPush": _guid("760451e3-6366-4863-97e5-37b2e094ead4")}
UNKNOWN = _guid("7a813f10-089f-4c3b-bfd0-724c04873cc5")
FACTORY = _guid("97c4f441-44bb-482e-8766-dbf7d32ce656")
DISPATCH = _guid("17ed370c-faa1-454c-87e7-8782469917f5")
EVENT_SINK = _guid("1c26b791-60cd-43a6-9414-83c9556a55e7")
POINTS = _guid("40251869-5a8a-44b1-a7f6-af232a4ac6f9")
CONTROL = _guid("dd06299a-ad7a-4394-866a-435a5e2d1abe")
SERVICES = _guid("caa8d289-6515-41c0-a0ae-7ef0d3d54777")
HOST_LOOP = _guid("49b5523e-8c75-48a5-9939-290cab8c94ac")
STARTER = _guid("4fb3e6d8-da93-452e-ab21-2e088aa54e9c")
HOST_DIALOGS = _guid("5144b14e-db75-4a18-90a0-42e79eff8ddc")
DIALOG_SERVICES = _guid("d11df184-960d-46e4-94ec-108a8fbea30e")


class _Function:
    """A function of an interface by its place in the table; called with the object's address first."""

    def __init__(self, slot: int, *arguments: Any) -> None:
        self._offset = slot * ctypes.sizeof(c_void_p)
        self._prototype = CFUNCTYPE(c_int32, c_void_p, *arguments)
        self._found: Dict[int, Callable[..., int]] = {}
        _functions.append(self)

    def __call__(self, this: int, *arguments: Any) -> int:
        place = (c_void_p.from_address(this).value or 0) + self._offset
        function = self._found.get(place)
        if function is None:
            function = self._found[place] = self._prototype(c_void_p.from_address(place).value or 0)
        return function(this, *arguments) if state.guard is None else state.guarded(function, this, *arguments)

    def forget(self) -> None:
        self._found.clear()


_functions: List[_Function] = []
_OBJECT = POINTER(c_void_p)
query_interface = _Function(0, c_char_p, _OBJECT)
release = _Function(2)
create_instance = _Function(3, c_void_p, c_char_p, _OBJECT)
invoke = _Function(4, c_int32, c_uint16, POINTER(Arguments), POINTER(Variant), POINTER(c_uint32))
find_connection_point = _Function(3, c_char_p, _OBJECT)
advise = _Function(3, c_void_p, POINTER(c_uint32))
place = _Function(3, c_float, c_float)
hide = _Function(4)
load = _Function(5, POINTER(PersistedProperty), c_uint32)
get_size = _Function(3, POINTER(c_int32), POINTER(c_int32))
get_pixels = _Function(4, _OBJECT)
data_count = _Function(3)
data_format = _Function(4, c_uint32, POINTER(c_char_p), _OBJECT, POINTER(c_uint32))
handle_next = _Function(4, c_int32)
get_waits = _Function(3, POINTER(LoopDescriptor), c_uint32, POINTER(c_uint32), POINTER(c_int64))
start = _Function(3, c_int32, c_uint16, POINTER(Arguments), POINTER(Variant), POINTER(c_uint32))
start_load = _Function(4, POINTER(PersistedProperty), c_uint32)
set_dialogs = _Function(3, c_void_p)

_FAILURES = {
    0x8000FFFF: (RuntimeError, "the control has ended"),
    0x80004002: (RuntimeError, "liborbelcast.so is too old for this package"),
    0x8007000E: (MemoryError, "out of memory"),
    0x80070057: (ValueError, "a value out of range"),
    0x8001010E: (RuntimeError, "called on another thread than the one that made the first control"),
    0x80020003: (AttributeError, "the property can only be read"),
    0x80020005: (TypeError, "a value that cannot be converted"),
    0x80020008: (TypeError, "a value that cannot be converted"),
    0x8002000A: (OverflowError, "a number too large for it"),
    0x8002000E: (TypeError, "too many arguments"),
    0x8002000F: (TypeError, "an argument is missing"),
    0x80040111: (RuntimeError, "the library has no such class"),
}


def check(result: int, what: str) -> int:
    """The result where it tells success; raises the exception that goes with it otherwise."""
    if result >= 0:
        return result
    kind, text = _FAILURES.get(result & 0xFFFFFFFF, (RuntimeError, f"error {result & 0xFFFFFFFF:#x}"))
    raise kind(f"{what}: {text}")


def ask(this: int, interface: bytes) -> int:
    """Another interface of an object, with a reference counted."""
    found = c_void_p()
    check(query_interface(this, interface, byref(found)), "QueryInterface")
    return found.value or 0


class Held:
    """A counted reference to an object of the library; given back with it."""
    __slots__ = ("address", "__weakref__")

    def __init__(self, address: int) -> None:
        self.address = address

    def __del__(self) -> None:
        if self.address and not state.ended:
            release(self.address)
        self.address = 0


class State:
    """The library's state: of one process, as the library's own objects are."""

    def __init__(self) -> None:
        self.library: Optional[ctypes.CDLL] = None
        self.path: Optional[str] = None
        self.depth = 0  # of the library's calls into Python
        self.ended = False  # the interpreter has begun to end
        self.raised: Optional[BaseException] = None  # what is to leave the next call of the program's own
        self.owner = 0  # the library's thread
        self.guard: Optional[Any] = None  # held while that is inside the library, where it is not the main thread

    def own(self) -> None:
        """The library is this thread's."""
        self.owner = threading.get_ident()
        if threading.current_thread() is threading.main_thread():
            self.guard = None
        elif self.guard is None:
            self.guard = threading.RLock()

    def guarded(self, function: Callable[..., int], *arguments: Any) -> int:
        """A call into the library, which the interpreter's end waits for; after that begins there is none any more."""
        if self.guard is None or threading.get_ident() != self.owner:
            return function(*arguments)
        with self.guard:
            self.stop_when_ended()
            return function(*arguments)

    def stop_when_ended(self) -> None:
        """Stops the library's thread where the interpreter ends on another one."""
        if self.ended and self.guard is not None and threading.get_ident() == self.owner:
            raise SystemExit

    def end(self) -> None:
        """The interpreter ends: from now on it is not called, and its thread of the library has left that.

        Python stops a thread of its own where that is, which the library's functions below it could not bear.
        """
        if self.guard is not None:
            self.guard.acquire()

    def callback(self, function: Callable[..., Optional[int]], *arguments: Any) -> int:
        """Runs a call of the library's into Python; nothing that it raises goes there."""
        if self.ended:
            return S_FALSE
        self.depth += 1
        try:
            return function(*arguments) or S_OK
        except (SystemExit, KeyboardInterrupt) as ending:
            self.raised = ending
        except BaseException:
            sys.excepthook(*sys.exc_info())
        finally:
            self.depth -= 1
        return S_FALSE

    def raise_pending(self) -> None:
        """Raises what a handler raised in order to end the program."""
        if self.raised is not None and self.depth == 0:
            raised, self.raised = self.raised, None
            raise raised


state = State()


def loaded() -> ctypes.CDLL:
    """The library, loaded where it is not yet. OSError where there is none."""
    if state.library is None:
        path = state.path or os.environ.get("ORBELCAST_LIBRARY") or "liborbelcast.so"
        try:
            state.library = ctypes.CDLL(path)
        except OSError as error:
            raise OSError(f"{error}; install the package orbelcast, or set ORBELCAST_LIBRARY to the path of "
                          "liborbelcast.so") from None
    return state.library


def load_library(path: str) -> None:
    """Takes the library at `path` in place of the installed one. RuntimeError where one is loaded already."""
    if state.library is not None:
        raise RuntimeError("the library is loaded already")
    state.path = path
    loaded()


def unload_library() -> bool:
    """Closes the library; False, and nothing done, while a control, picture or frame of it is alive."""
    if state.library is None:
        return True
    if state.depth or state.guarded(state.library.DllCanUnloadNow) != S_OK:
        return False
    for function in _functions:
        function.forget()
    handle, state.library = state.library._handle, None
    _ctypes.dlclose(handle)  # type: ignore[attr-defined]
    return True


def factory(name: str = "VideoServerPush") -> Held:
    """The class factory of a control."""
    if state.ended:
        raise RuntimeError("the interpreter ends")
    made = c_void_p()
    check(state.guarded(loaded().DllGetClassObject, CLASSES[name], FACTORY, byref(made)), name)
    state.own()
    return Held(made.value or 0)


# ---- Values ----------------------------------------------------------------------------------------------------------


def text_of(pointer: Optional[int], size: int) -> str:
    """A text of the library's: UTF-8, of a server maybe anything."""
    return ctypes.string_at(pointer, size).decode("utf-8", "replace") if pointer and size else ""


def to_variant(value: Any, variant: Variant) -> Any:
    """Puts a value into a variant; the result keeps what it points to alive."""
    if isinstance(value, bool):
        variant.type, variant.i16 = BOOLEAN, -value
    elif value is None:
        variant.type = MISSING
    elif isinstance(value, str):
        encoded = value.encode("utf-8", "surrogateescape")
        variant.type, variant.size, variant.text = TEXT, len(encoded), encoded
        return encoded
    elif isinstance(value, float):
        variant.type, variant.f64 = DOUBLE, value
    elif hasattr(value, "__index__"):
        number = value.__index__()
        if not -(1 << 63) <= number < 1 << 63:
            raise OverflowError(f"{number} is too large")
        variant.type, variant.i64 = LONG_LONG, number
    else:
        raise TypeError(f"a control takes no {type(value).__name__}")
    return None


def from_variant(variant: Variant) -> Any:
    """The value of a variant that is none of an object."""
    kind = variant.type
    if kind == REFERENCE:
        return from_variant(Variant.from_address(variant.pointer))
    if kind == TEXT:
        return text_of(variant.pointer, variant.size)
    if kind == LONG:
        return variant.i32
    if kind == INTEGER:
        return variant.i16
    if kind == BOOLEAN:
        return variant.i16 != 0
    if kind == BYTES:
        return ctypes.string_at(variant.pointer, variant.size) if variant.size else b""
    return {LONG_LONG: variant.i64, SINGLE: variant.f32, DOUBLE: variant.f64}.get(kind)


@functools.lru_cache(maxsize=16)
def byte_array(size: int) -> Any:
    """The type of so many bytes."""
    return c_uint8 * size


# ---- Objects of this program that the library calls ------------------------------------------------------------------


class _Head(Structure):
    _fields_ = [("functions", c_void_p)]


class HostClass:
    """A class of objects whose functions the library calls: `functions` take the Python object first.

    The functions are never freed, so an object may be released from inside one of them.
    """

    def __init__(self, interface: bytes, *functions: Any) -> None:
        """`functions` are pairs: the types of the arguments, and the function."""
        self._interface = interface
        self._objects: Dict[int, List[Any]] = {}  # by address: its memory, the Python object, its references
        answer = CFUNCTYPE(c_int32, c_void_p, c_void_p, POINTER(c_void_p))
        count = CFUNCTYPE(c_uint32, c_void_p)
        self._thunks = [answer(self._query), count(self._add), count(self._release)]
        for types, function in functions:
            self._thunks.append(CFUNCTYPE(c_int32, c_void_p, *types)(self._caller(function)))
        self._table = (c_void_p * len(self._thunks))(*[ctypes.cast(each, c_void_p) for each in self._thunks])

    def make(self, python: Any) -> int:
        """The address of an object with no reference yet: it is the library's, which counts one."""
        head = _Head(ctypes.addressof(self._table))
        address = ctypes.addressof(head)
        self._objects[address] = [head, python, 0]
        return address

    def drop(self, address: int) -> None:
        """Ends an object that the library did not take."""
        if address in self._objects and self._objects[address][2] == 0:
            del self._objects[address]

    def _caller(self, function: Any) -> Callable[..., int]:
        def call(this: int, *arguments: Any) -> int:
            known = self._objects.get(this)
            return state.callback(function, known[1], *arguments) if known else S_FALSE
        return call

    def _query(self, this: int, interface: int, found: Any) -> int:
        known = ctypes.string_at(interface, 16) in (UNKNOWN, self._interface)
        found[0] = this if known else None
        if known:
            self._add(this)
        return S_OK if known else NO_INTERFACE

    def _add(self, this: int) -> int:
        known = self._objects[this]
        known[2] += 1
        return int(known[2])

    def _release(self, this: int) -> int:
        known = self._objects.get(this)
        if known is None:
            return 0
        known[2] -= 1
        if known[2] <= 0:
            del self._objects[this]
        return int(known[2])
