vcl 4.1;

# A cache before cameras, for gateways and other viewers: however many ask for a camera's picture, the camera is asked
# once in each time to live. cameras.vcl, beside this file or elsewhere on vcl_path, names the cameras.

include "cameras.vcl";

sub vcl_recv {
    # Commands, the archive (where a server keeps each viewer's place), streams that do not end, lists of cameras: each
    # is for who asked.
    if (req.method != "GET" || req.url !~ "^/live/") {
        return (pass);
    }
    # Credentials of Digest are good for one request.
    if (req.http.Authorization && req.http.Authorization !~ "(?i)^ *Basic ") {
        return (pass);
    }
    return (hash);
}

sub vcl_hash {
    # The address and the host are in it already; a picture that a login was needed for is for that login alone.
    hash_data(req.http.Authorization);
}

sub vcl_backend_response {
    if (bereq.uncacheable) {
        return (deliver);
    }
    if (beresp.status != 200 || beresp.http.Content-Type !~ "(?i)^image/jpeg" || beresp.http.Set-Cookie) {
        # For a second each request goes to the camera by itself: one that fails holds up no queue.
        set beresp.uncacheable = true;
        set beresp.ttl = 1s;
        return (deliver);
    }
    # Whatever the camera's own headers say of caches; they reach the viewer as they are. Shorter than the distance of
    # two pictures, and nothing older is given out while the next one is fetched.
    set beresp.ttl = 40ms;
    set beresp.grace = 0s;
    set beresp.keep = 0s;
    return (deliver);
}

sub vcl_deliver {
    # Of the cache's own, which a viewer has no use for. Each picture carries them.
    unset resp.http.X-Varnish;
    unset resp.http.Via;
    unset resp.http.Age;
}
