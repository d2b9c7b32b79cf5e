// The elements <video-server-push> and <user-control-1>.

import { UserControl1Element } from "./player.js";
import { VideoServerPushElement } from "./viewer.js";

customElements.define("video-server-push", VideoServerPushElement);
customElements.define("user-control-1", UserControl1Element);

export { UserControl1Element, VideoServerPushElement };
