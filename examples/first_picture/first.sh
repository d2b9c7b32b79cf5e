# The first picture in a shell.
orbelcast snapshot http://127.0.0.1:8080/live/1 now.jpg
