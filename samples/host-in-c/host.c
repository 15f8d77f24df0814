#include <inttypes.h>
#include <stdio.h>

#include <conduit/conduit_host.h>

/* Prints the first bytes of an item; escapes bytes other than printable ASCII as \x0a. */
static void print_start(const unsigned char* data, int32_t length) {
  const int32_t shown = length < 40 ? length : 40;
  for (int32_t i = 0; data != NULL && i < shown; ++i) {
    const int plain = data[i] >= ' ' && data[i] <= '~' && data[i] != '\\';
    printf(plain ? "%c" : "\\x%02x", (unsigned)data[i]);
  }
  printf(length > shown ? "...\n" : "\n");
}

static int32_t on_item(void* context, const conduit_host_item* item) {
  ++*(int*)context;
  printf("  %s (type %" PRId32 ", %" PRId32 " bytes", item->name, item->type, item->length);
  if (item->feature != NULL) {
    printf(", feature %s", item->feature);
  }
  printf("%s) ", item->last ? "" : ", more follow");
  print_start(item->data, item->length);
  return 0;
}

static void on_event(void* context, const char* name) {
  (void)context;
  printf("event %s\n", name);
}

static void on_begin(void* context) {
  (void)context;
  printf("document\n");
}

static void on_error(void* context, const char* text) {
  (void)context;
  if (*text != '\0') {
    printf("error %s\n", text);
  }
}

/* Prints why the last call failed and returns the exit status. */
static int failed(conduit_host host) {
  char reason[1024];
  conduit_host_last_error(host, reason, sizeof reason);
  fprintf(stderr, "%s\n", reason);
  return 1;
}

static int play(conduit_host host, const char* module, const char* session) {
  if (conduit_host_load(host, module) != 0 ||
      conduit_host_set_parameter(host, "DateOfBirthFormat", "%d.%m.%Y") != 0 ||
      conduit_host_set_session(host, session) != 0 || conduit_host_initialise(host) != 0 ||
      conduit_host_wait(host, -1) != 0) {
    return failed(host);
  }
  return conduit_host_shutdown(host) != 0 ? failed(host) : 0;
}

int main(int count, char** arguments) {
  if (count != 3) {
    fprintf(stderr, "usage: host-in-c MODULE SESSION\n");
    return 2;
  }
  int items = 0;
  const conduit_host_callbacks callbacks = {.size = sizeof callbacks,
                                            .context = &items,
                                            .item = on_item,
                                            .event = on_event,
                                            .begin = on_begin,
                                            .error = on_error};
  conduit_host host = 0;
  if (conduit_host_create(&callbacks, &host) != 0) {
    return 1;
  }
  const int status = play(host, arguments[1], arguments[2]);
  conduit_host_destroy(host); /* no callback follows it */
  printf("%d items\n", items);
  return status;
}
