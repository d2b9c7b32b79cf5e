"""The two controls. Their members are made of the interfaces' description; controls.pyi tells their types."""

from ._control import Control, make_class
from ._frames import Viewer

VideoServerPush = make_class("VideoServerPush", Viewer)
UserControl1 = make_class("UserControl1", Control)
