"""Answers to the questions of controls: a library without a screen leaves them to the program."""

from __future__ import annotations

from ctypes import POINTER, c_char_p, c_int32, c_uint32, c_void_p
from typing import Any, Callable, Dict, List, Optional, TypeVar, overload

from . import _native as native
from ._control import Control, after_making, living

F = TypeVar("F", bound=Callable[..., Any])

_answers: Dict[str, Callable[..., Any]] = {}
_kept: List[Any] = [None]


def _text(given: Optional[bytes]) -> str:
    return (given or b"").decode("utf-8", "replace")


def _give(variant: Any, answer: Optional[str]) -> int:
    if answer is None:
        return native.S_FALSE
    _kept[0] = native.to_variant(str(answer), variant.contents)
    return native.S_OK


def _ask(name: str, *arguments: Any) -> Any:
    return _answers[name](*arguments) if name in _answers else None


def _save_name(_: Any, title: bytes, filter: bytes, name: Any) -> int:
    return _give(name, _ask("AskSaveName", _text(title), _text(filter)))


def _message(_: Any, text: bytes, title: bytes, question: int, icon: int) -> int:
    return native.S_OK if _ask("ShowMessage", _text(text), _text(title), bool(question)) else native.S_FALSE


def _line(_: Any, prompt: bytes, title: bytes, text: Any) -> int:
    return _give(text, _ask("AskText", _text(prompt), _text(title)))


def _compression(_: Any, names: Any, count: int, codec: Any, key_frame_every: Any, kilobytes_per_second: Any) -> int:
    codecs = [_text(names[i]) for i in range(count)]
    chosen = _ask("ChooseCompression", codecs)
    if chosen is None:
        return native.S_FALSE
    name, *rest = (chosen,) if isinstance(chosen, str) else chosen
    codec[0] = codecs.index(name)
    for target, value in zip((key_frame_every, kilobytes_per_second), rest):
        target[0] = value
    return native.S_OK


def _beep(_: Any) -> None:
    _ask("Beep")


_HOST = native.HostClass(native.HOST_DIALOGS, ((c_char_p, c_char_p, POINTER(native.Variant)), _save_name),
                         ((c_char_p, c_char_p, c_int32, c_int32), _message),
                         ((c_char_p, c_char_p, POINTER(native.Variant)), _line),
                         ((POINTER(c_char_p), c_uint32, POINTER(c_uint32), POINTER(c_int32), POINTER(c_int32)),
                          _compression), ((), _beep))
_QUESTIONS = ("AskSaveName", "ShowMessage", "AskText", "ChooseCompression", "Beep")


def answer_for(control: Control) -> None:
    services = native.Held(native.ask(control._dispatch, native.DIALOG_SERVICES))
    host = _HOST.make(None)
    try:
        native.check(native.set_dialogs(services.address, c_void_p(host)), "SetDialogs")
    finally:
        _HOST.drop(host)


after_making.append(answer_for)


@overload
def answer(question: str) -> Callable[[F], F]: ...
@overload
def answer(question: str, function: F) -> F: ...
def answer(question: str, function: Any = None) -> Any:
    """Lets `function` answer a question of the controls; without a function it is a decorator. It must not wait.

    - `AskSaveName(title, filter)`: the name of the file to save under; None cancels.
    - `ShowMessage(text, title, question)`: true answers Yes where `question` is true.
    - `AskText(prompt, title)`: the line of text; None cancels.
    - `ChooseCompression(codecs)`: one of the names in `codecs`, or a tuple of it, the pictures from one key picture to
      the next, and the kilobytes a second (0: the codec's own); None cancels.
    - `Beep()`.

    Questions without a function are cancelled, as they are where it raises. ValueError: there is no such question.
    """
    if question not in _QUESTIONS:
        raise ValueError(f"there is no question {question!r}; there are {', '.join(_QUESTIONS)}")
    if function is None:
        return lambda given: answer(question, given)
    _answers[question] = function
    for control in living()[:1]:
        answer_for(control)
    return function
