# The cameras behind the cache. One camera server:

backend camera {
    .host = "192.0.2.10";
    .port = "8080";
    .connect_timeout = 5s;
    .first_byte_timeout = 20s;
    .between_bytes_timeout = 20s;
    .max_connections = 128;
}

# Several are told apart by the name under which the cache is asked, one backend each. The first is the one for other names.
#
# backend yard { .host = "192.0.2.11"; .port = "80"; }
# sub vcl_recv { if (req.http.Host ~ "^yard\.") { set req.backend_hint = yard; } }
