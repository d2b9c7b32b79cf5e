// Made by tools/make_reference from the description of the controls' interfaces. Do not change it by hand.

export const interfaces = {
 "VideoServerPush": {
  "element": "video-server-push",
  "properties": {
   "FrameRate": {
    "type": "Integer",
    "writable": true
   },
   "Server": {
    "type": "String",
    "writable": false
   },
   "ShowBandwidth": {
    "type": "Boolean",
    "writable": true
   },
   "MotionDetector": {
    "type": "Boolean",
    "writable": true
   },
   "Username": {
    "type": "String",
    "writable": true
   },
   "Password": {
    "type": "String",
    "writable": true
   },
   "DirectToDisk": {
    "type": "Boolean",
    "writable": true
   },
   "MotionArea_Y2": {
    "type": "Long",
    "writable": true
   },
   "MotionArea_y1": {
    "type": "Long",
    "writable": true
   },
   "MotionArea_x2": {
    "type": "Long",
    "writable": true
   },
   "MotionArea_x1": {
    "type": "Long",
    "writable": true
   },
   "MotionSensivity": {
    "type": "Long",
    "writable": true
   },
   "ShowMotion": {
    "type": "Boolean",
    "writable": true
   },
   "AlwaysSmooth": {
    "type": "Boolean",
    "writable": true
   },
   "DisableTestScreen": {
    "type": "Boolean",
    "writable": true
   },
   "MotionByZones": {
    "type": "Boolean",
    "writable": true
   },
   "MotionString": {
    "type": "String",
    "writable": true
   },
   "URL": {
    "type": "String",
    "writable": false
   },
   "AutoReconnect": {
    "type": "Boolean",
    "writable": true
   }
  },
  "methods": {
   "Connect": {
    "arguments": [
     [
      "URL",
      "String",
      false
     ],
     [
      "OnlyOnce",
      "Boolean",
      true
     ],
     [
      "msg",
      "String",
      true
     ]
    ],
    "result": ""
   },
   "ImageOnClipboard": {
    "arguments": [],
    "result": ""
   },
   "SaveImage": {
    "arguments": [
     [
      "Filename",
      "String",
      false
     ]
    ],
    "result": ""
   },
   "Disconnect": {
    "arguments": [
     [
      "NoNewStatus",
      "Boolean",
      true
     ]
    ],
    "result": ""
   },
   "StopGettingFrames": {
    "arguments": [],
    "result": ""
   },
   "ShowStatus": {
    "arguments": [
     [
      "X",
      "String",
      false
     ]
    ],
    "result": ""
   },
   "ToogleClock": {
    "arguments": [
     [
      "X",
      "Boolean",
      false
     ]
    ],
    "result": ""
   },
   "Pulse": {
    "arguments": [],
    "result": ""
   },
   "RequestEnd": {
    "arguments": [],
    "result": ""
   },
   "MultiCamView": {
    "arguments": [
     [
      "inpString",
      "String",
      false
     ]
    ],
    "result": ""
   },
   "GetPictureArray": {
    "arguments": [],
    "result": "Variant"
   },
   "GetPicture": {
    "arguments": [],
    "result": "IPicture"
   },
   "RenderPicture": {
    "arguments": [
     [
      "PictureHdc",
      "Long",
      false
     ],
     [
      "sX",
      "Long",
      true
     ],
     [
      "sY",
      "Long",
      true
     ]
    ],
    "result": ""
   }
  },
  "events": {
   "StreamInfo": [
    "BytesPerSecond",
    "FrameRate"
   ],
   "MotionDetected": [
    "X1",
    "Y1",
    "X2",
    "Y2"
   ],
   "Connected": [],
   "Disconnected": [],
   "ConnectionFailed": [],
   "ConnectionFailedV2": [
    "xUrl",
    "xType"
   ],
   "ConnectionBroken": [],
   "Status": [
    "xDesc"
   ],
   "VigilboxInfo": [
    "rX"
   ],
   "VigilboxTCR": [
    "xYear",
    "xMonth",
    "xDay",
    "xHour",
    "xMinute",
    "xSecond",
    "xDs",
    "xTCR"
   ],
   "MouseDown": [
    "Button"
   ],
   "RCQueryMethod": [
    "Rc_Query"
   ],
   "Plugin": [
    "Plugin"
   ],
   "OLEDragDrop": [
    "Data",
    "Effect",
    "Button",
    "Shift",
    "X",
    "y"
   ],
   "MotionArea": [
    "X1",
    "Y1",
    "X2",
    "Y2"
   ],
   "MotionDetectedArea": [
    "Area"
   ]
  },
  "persisted": []
 },
 "UserControl1": {
  "element": "user-control-1",
  "properties": {
   "SystemName": {
    "type": "String",
    "writable": false
   },
   "ShowExtendedFeatures": {
    "type": "Boolean",
    "writable": true
   }
  },
  "methods": {
   "AviStart": {
    "arguments": [],
    "result": ""
   },
   "StopAvi": {
    "arguments": [],
    "result": ""
   },
   "RefreshURLs": {
    "arguments": [
     [
      "l",
      "String",
      false
     ],
     [
      "i",
      "String",
      false
     ]
    ],
    "result": ""
   },
   "DoResize": {
    "arguments": [
     [
      "X",
      "Boolean",
      false
     ]
    ],
    "result": ""
   },
   "Connect2Server": {
    "arguments": [
     [
      "xServer",
      "String",
      false
     ],
     [
      "xUsername",
      "String",
      false
     ],
     [
      "xPassword",
      "String",
      false
     ]
    ],
    "result": ""
   },
   "SetMultiCams": {
    "arguments": [],
    "result": ""
   }
  },
  "events": {},
  "persisted": [
   "Server",
   "Port",
   "Username",
   "Password",
   "LURL",
   "IURL",
   "Start",
   "ExtendedControls",
   "Device",
   "_ExtentX",
   "_ExtentY",
   "_Resize"
  ]
 }
};
