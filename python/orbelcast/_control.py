"""The common part of both controls: members by the interface's names, events, and their end."""

from __future__ import annotations

import atexit
import inspect
import sys
import time
import weakref
from ctypes import POINTER, byref, c_char_p, c_int32, c_uint32, c_void_p, pointer, string_at
from typing import Any, Callable, Dict, Generic, List, Optional, Tuple, Type, TypeVar

from . import _native as native
from ._members import CLASSES

T = TypeVar("T")
Handler = Callable[..., object]

_TWIPS = 15  # a pixel

# Functions of other modules, called when a control was made.
after_making: List[Callable[["Control"], None]] = []
_PYTHON_TYPES = {"Boolean": "bool", "Integer": "int", "Long": "int", "Single": "float", "String": "str", "Variant": "bytes",
                 "IPicture": "Picture | None", "IDataObject": "dict[str, bytes]", "": "None"}


class Ref(Generic[T]):
    """A variable for an argument by reference: `value` is what is given, and afterwards what the control wrote."""
    __slots__ = ("value",)

    def __init__(self, value: T) -> None:
        self.value = value

    def __repr__(self) -> str:
        return f"Ref({self.value!r})"


class _Call:
    """The arguments of one call, in memory that lives as long as it."""

    def __init__(self, values: Any) -> None:
        self.variants = (native.Variant * len(values))()
        self._kept: List[Any] = []
        self._variables: List[Tuple[Ref[Any], native.Variant]] = []
        for variant, value in zip(self.variants, values):
            if isinstance(value, Ref):
                variable = native.Variant()
                self._kept.append(native.to_variant(value.value, variable))
                variant.type, variant.pointer = native.REFERENCE, c_void_p.from_buffer(pointer(variable)).value
                self._variables.append((value, variable))
            else:
                self._kept.append(native.to_variant(value, variant))
        self.arguments = native.Arguments(self.variants, len(values))

    def write_back(self) -> None:
        for ref, variable in self._variables:
            ref.value = native.from_variant(variable)
            if variable.owner:
                native.release(variable.owner)


def _result(variant: native.Variant) -> Any:
    """The value of a member's result, which is given back; of a picture the picture, which holds it."""
    if variant.type == native.OBJECT:
        from ._frames import Picture
        return Picture(native.Held(variant.pointer)) if variant.pointer else None
    value = native.from_variant(variant)
    if variant.owner:
        native.release(variant.owner)
    return value


def _event_value(variant: native.Variant) -> Any:
    """The value of an event's argument; of dropped data the bytes by their media type."""
    if variant.type == native.REFERENCE:
        return _event_value(native.Variant.from_address(variant.pointer))
    if variant.type != native.OBJECT:
        return native.from_variant(variant)
    dropped: Dict[str, bytes] = {}
    if not variant.pointer:
        return dropped
    name, data, size = c_char_p(), c_void_p(), c_uint32()
    for index in range(native.data_count(variant.pointer)):
        if native.data_format(variant.pointer, index, byref(name), byref(data), byref(size)) == native.S_OK:
            key = (name.value or b"").decode("utf-8", "replace")
            dropped[key] = string_at(data, size.value) if size.value else b""
    return dropped


def in_asyncio() -> bool:
    """Whether this thread runs an asyncio loop just now, which must not be held up."""
    events = sys.modules.get("asyncio.events")
    return events is not None and events._get_running_loop() is not None


def _tell_asyncio() -> None:
    """The library's waits may have changed: the asyncio loop that runs here watches that."""
    if in_asyncio():
        from . import _waiting
        _waiting.changed()


def _release_all(addresses: List[int]) -> None:
    """Gives a control's references back; with the last one it ends."""
    while addresses:
        native.release(addresses.pop())
    _tell_asyncio()


def _raised(control: "weakref.ref[Control]", event: int, arguments: Any) -> None:
    alive = control()
    if alive is not None:
        alive._raise(event, arguments.contents)


_SINKS = native.HostClass(native.EVENT_SINK, ((c_int32, POINTER(native.Arguments)), _raised))


class Control:
    """A control of the library.

    Everything happens on the thread that made the first control (RuntimeError on any other). Events come while the
    library's loop runs: in `run`, in a loop over `frames`, in members that wait, and inside a running asyncio loop. In a
    handler, and while asyncio runs, a member that waits is started and returns at once.

    It ends with `close`, at the end of a `with`, when nothing refers to it any more, or with the program: what is under
    way is aborted, and no event comes any more.
    """

    _name = ""
    _events: Dict[int, Any] = {}

    def __init__(self, *, width: int = 640, height: int = 480, **properties: Any) -> None:
        """`width` and `height` are in pixels. `properties` are set in order; a player reads those that its container
        keeps for it (`Server`, `Device`) first, as texts."""
        if native.state.depth and self._name == "UserControl1":
            raise RuntimeError("a player is not made in a handler: its making waits")
        persisted = {key: properties.pop(key) for key in CLASSES[self._name]["persisted"] if key in properties}
        for name in properties:
            if name not in self._properties:
                raise TypeError(f"{self._name} has no property {name!r}")
        made = c_void_p()
        factory = native.factory(self._name)
        native.check(native.create_instance(factory.address, None, native.DISPATCH, byref(made)), self._name)
        self._dispatch = made.value or 0
        held = [self._dispatch]
        self._finalizer = weakref.finalize(self, _release_all, held)
        self._finalizer.atexit = False  # _end does it
        for attribute, interface in (("_control", native.CONTROL), ("_services", native.SERVICES),
                                     ("_starter", native.STARTER), ("_loop", native.HOST_LOOP)):
            setattr(self, attribute, native.ask(self._dispatch, interface))
            held.append(getattr(self, attribute))
        self._handlers: Dict[int, List[Handler]] = {}
        self._listen()
        _living.add(self)
        for told in after_making:
            told(self)
        self.place(width, height)
        if persisted:
            self._load(persisted)
        for name, value in properties.items():
            setattr(self, name, value)

    # ---- Calls ------------------------------------------------------------------------------------------------------

    def _call(self, member: Any, kind: int, values: Any = ()) -> Any:
        self._alive()
        call = _Call(values) if values else None
        result, wrong = native.Variant(), c_uint32()
        starts = native.state.depth > 0 or in_asyncio()
        function, this = (native.start, self._starter) if starts else (native.invoke, self._dispatch)
        answer = function(this, member["id"], kind, byref(call.arguments) if call else None, byref(result),
                          byref(wrong))
        if answer < 0:
            what = f"{self._name}.{member['name']}"
            if kind == native.METHOD and wrong.value < len(member["arguments"]):
                what += f", {member['arguments'][wrong.value]['name']}"
            native.check(answer, what)
        if call and answer == native.S_OK:
            call.write_back()
        value = _result(result)
        self._called()
        return value

    def _called(self) -> None:
        _tell_asyncio()
        native.state.raise_pending()

    def _alive(self) -> None:
        if not self._finalizer.alive:
            native.state.stop_when_ended()
            raise RuntimeError(f"the {self._name} was closed")

    def let(self, name: str, value: Any) -> Any:
        """Sets a property and returns what the control made of the value: 30 for a `FrameRate` of 40."""
        member = self._properties.get(name)
        if member is None:
            raise AttributeError(f"{self._name} has no property {name!r}")
        variable = Ref(value)
        self._call(member, native.PROPERTY_PUT, (variable,))
        return variable.value

    def place(self, width: int, height: int) -> None:
        """Gives the control its size, in pixels: the size at which the picture is drawn. ValueError below 0."""
        self._alive()
        native.check(native.place(self._control, width * _TWIPS, height * _TWIPS), "place")
        self._called()

    def hide(self) -> None:
        """The control is hidden: its stream does nothing until the next successful `Connect`."""
        self._alive()
        native.check(native.hide(self._control), "hide")
        self._called()

    def _load(self, persisted: Dict[str, Any]) -> None:
        pairs = [(key.encode(), str(value).encode()) for key, value in persisted.items()]
        properties = (native.PersistedProperty * len(pairs))(
            *[native.PersistedProperty(key, len(key), len(text), text) for key, text in pairs])
        function, this = (native.start_load, self._starter) if in_asyncio() else (native.load, self._control)
        native.check(function(this, properties, len(pairs)), "load")
        self._called()

    # ---- Events -----------------------------------------------------------------------------------------------------

    def on(self, event: str, handler: Optional[Handler] = None) -> Any:
        """Calls `handler` with the event's arguments whenever it is raised; without a handler it is a decorator.

        What a handler raises goes to `sys.excepthook`; SystemExit and KeyboardInterrupt leave the call that runs the
        loop. A handler that returns a dict writes arguments by reference: {"Effect": 1}. ValueError: no such event.
        """
        member = self._event(event)
        if handler is None:
            return lambda function: self.on(event, function)
        self._handlers.setdefault(member["id"], []).append(handler)
        return handler

    def off(self, event: str, handler: Handler) -> None:
        """Ends what `on` began. ValueError where it is not so called."""
        self._handlers.get(self._event(event)["id"], []).remove(handler)

    def _event(self, name: str) -> Any:
        for member in self._events.values():
            if member["name"] == name:
                return member
        raise ValueError(f"{self._name} has no event {name!r}; there are "
                         f"{', '.join(each['name'] for each in self._events.values()) or 'none'}")

    def _listen(self) -> None:
        if self._name not in native.EVENTS:
            return
        points, point, cookie = native.Held(native.ask(self._dispatch, native.POINTS)), c_void_p(), c_uint32()
        native.check(native.find_connection_point(points.address, native.EVENTS[self._name], byref(point)), "events")
        held = native.Held(point.value or 0)
        sink = _SINKS.make(weakref.ref(self))
        try:
            native.check(native.advise(held.address, sink, byref(cookie)), "events")
        finally:
            _SINKS.drop(sink)

    def _raise(self, event: int, arguments: native.Arguments) -> None:
        self._note(event, arguments)
        for handler in tuple(self._handlers.get(event, ())):
            # One handler's failure is not the next one's.
            native.state.callback(self._handle, handler, event, arguments)
            if not self._finalizer.alive:
                return

    def _handle(self, handler: Handler, event: int, arguments: native.Arguments) -> None:
        written = handler(*[_event_value(arguments.values[i]) for i in range(arguments.count)])
        if isinstance(written, dict) and written:
            for i, argument in enumerate(self._events[event]["arguments"]):
                if argument["name"] in written and arguments.values[i].type == native.REFERENCE:
                    variable = native.Variant.from_address(arguments.values[i].pointer)
                    self._written = native.to_variant(written[argument["name"]], variable)

    def _note(self, event: int, arguments: native.Arguments) -> None:
        """The class's own note of an event."""

    # ---- The end ----------------------------------------------------------------------------------------------------

    def close(self) -> None:
        """Ends the control, at any moment, also in its own handler. Once more does nothing."""
        self._finalizer()
        _living.discard(self)

    def __enter__(self: T) -> T:
        return self

    def __exit__(self, *_: Any) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<orbelcast.{self._name}{'' if self._finalizer.alive else ', closed'}>"

    def __setattr__(self, name: str, value: Any) -> None:
        if not name.startswith("_") and name not in self._properties:
            raise AttributeError(f"{self._name} has no property {name!r}")
        object.__setattr__(self, name, value)

    _properties: Dict[str, Any] = {}
    _control = _services = _starter = _loop = 0


_living: "weakref.WeakSet[Control]" = weakref.WeakSet()


def living() -> List[Control]:
    return [each for each in _living if each._finalizer.alive]


@atexit.register
def _end() -> None:
    """Ends all controls, which brings a thread that waits in the library back from there, and waits until it is back."""
    native.state.ended = True
    for control in living():
        ending = control._finalizer.detach()  # called, it does nothing any more where weakref's own end came first
        if ending is not None:
            ending[1](*ending[2])
    native.state.end()


# ---- The loop --------------------------------------------------------------------------------------------------------


def _look(seconds: Optional[float], control: Optional[Control] = None) -> None:
    """Lets the loop handle the next thing, waiting for it at most so long. A signal ends the wait. `control` is any that is
    alive, where the caller knows one."""
    if native.state.depth:
        raise RuntimeError("the loop runs already: this is a handler of it")
    if in_asyncio():
        raise RuntimeError("asyncio runs the loop: use 'async for' and 'await'")
    wait = 3600 if seconds is None else max(0, min(3600, seconds))
    controls = (control,) if control is not None else living()
    if controls:
        native.check(native.handle_next(controls[0]._services, int(wait * 1000) + 1), "the loop")
        native.state.raise_pending()
    else:  # nothing can come
        time.sleep(wait)


def run(seconds: Optional[float] = None, until: Optional[Callable[[], object]] = None) -> bool:
    """Runs the loop: for so many seconds, for ever without them, or until `until()` is true, which is looked at after
    each event. True where that ended it. RuntimeError inside a handler and inside asyncio."""
    end = None if seconds is None else time.monotonic() + seconds
    while not (until is not None and until()):
        left = None if end is None else end - time.monotonic()
        if left is not None and left <= 0:
            return False
        _look(left)
    return True


# ---- Classes of the description --------------------------------------------------------------------------------------


def _property(member: Any) -> property:
    def get(self: Control) -> Any:
        return self._call(member, native.PROPERTY_GET)

    def put(self: Control, value: Any) -> None:
        self._call(member, native.PROPERTY_PUT, (value,))

    return property(get, put if member["writable"] else None, doc=member["text"])


def _method(member: Any) -> Callable[..., Any]:
    names = [each["name"] for each in member["arguments"]]
    parameters = [inspect.Parameter("self", inspect.Parameter.POSITIONAL_ONLY)]
    for each in member["arguments"]:
        parameters.append(inspect.Parameter(each["name"], inspect.Parameter.POSITIONAL_OR_KEYWORD,
                                            annotation=_PYTHON_TYPES[each["type"]],
                                            default=None if each["optional"] else inspect.Parameter.empty))
    signature = inspect.Signature(parameters, return_annotation=_PYTHON_TYPES[member["result"]])

    def method(self: Control, *args: Any, **kwargs: Any) -> Any:
        if kwargs or len(args) != len(names):
            bound = signature.bind(self, *args, **kwargs)
            bound.apply_defaults()
            args = bound.args[1:]
        return self._call(member, native.METHOD, args)

    method.__name__ = method.__qualname__ = member["name"]
    method.__doc__ = member["text"]
    method.__signature__ = signature  # type: ignore[attr-defined]
    return method


def make_class(name: str, base: Type[Control]) -> Type[Control]:
    """The class of a control, with the members of its interface's description."""
    described = CLASSES[name]
    members: Dict[str, Any] = {"_name": name, "__doc__": f"{described['text']}\n\n{inspect.cleandoc(Control.__doc__ or '')}",
                               "__module__": "orbelcast",
                               "_properties": {each["name"]: each for each in described["properties"]},
                               "_events": {each["id"]: each for each in described["events"]}}
    for each in described["properties"]:
        members[each["name"]] = _property(each)
    for each in described["methods"]:
        members[each["name"]] = _method(each)
    return type(name, (base,), members)
