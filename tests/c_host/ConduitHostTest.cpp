#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <future>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/Environment.h"
#include <conduit/conduit_host.h>

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;

namespace {

constexpr const char* FakeModule = FAKE_MODULE;
constexpr const char* End = "event DEVICE_DISCONNECTED\nstate Terminated\n";

/// What the fake module plays once it is started.
void PlayNext(const std::string& script) {
  const std::string file =
      std::string(TEST_FOLDER "/") + testing::UnitTest::GetInstance()->current_test_info()->name();
  std::ofstream(file, std::ios::binary) << script;
  conduit::SetEnvironment("FAKE_MODULE_SCRIPT", file);
}

/// A host that takes down what its callbacks are handed.
class ConduitHost : public testing::Test {
 public:
  ConduitHost() { EXPECT_EQ(conduit_host_create(&callbacks, &host), CONDUIT_HOST_SUCCESS); }
  ~ConduitHost() override { conduit_host_destroy(host); }
  ConduitHost(const ConduitHost&) = delete;
  ConduitHost& operator=(const ConduitHost&) = delete;

 protected:
  void Load(const std::string& script = "") {
    PlayNext(script);
    ASSERT_EQ(conduit_host_load(host, FakeModule), CONDUIT_HOST_SUCCESS) << LastError();
  }

  void Start(const std::string& script) {
    Load(script);
    ASSERT_EQ(conduit_host_initialise(host), CONDUIT_HOST_SUCCESS) << LastError();
  }

  std::string LastError() const {
    std::string text(conduit_host_last_error(host, nullptr, 0), '\0');
    conduit_host_last_error(host, text.data(), text.size() + 1);
    return text;
  }

  std::vector<std::string> Said() {
    const std::lock_guard lock(mutex);
    return said;
  }

  /// A run that is stopped early need not come to it.
  void AwaitSaid(const std::string& what) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (std::ranges::count(Said(), what) == 0 && std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }

  static void Say(void* context, const std::string& what) {
    auto* const test = static_cast<ConduitHost*>(context);
    {
      const std::lock_guard lock(test->mutex);
      test->said.push_back(what);
    }
    if (test->then) {
      test->then(what);
    }
  }

  static std::int32_t SayItem(void* context, const conduit_host_item* item) {
    const std::string data = item->data == nullptr
                                 ? "none"
                                 : std::string(static_cast<const char*>(item->data),
                                               static_cast<std::size_t>(item->length));
    const char* const feature = conduit_host_item_property(item, "feature");
    EXPECT_STREQ(feature, item->feature);
    EXPECT_EQ(conduit_host_item_property(item, "other"), nullptr);
    const conduit_host_item copy = *item;
    EXPECT_EQ(conduit_host_item_property(&copy, "feature"), nullptr);
    Say(context, std::string("item ") + item->name + " " + data + " " +
                     (feature != nullptr ? feature : "-") + (item->last != 0 ? " last" : ""));
    return 1;
  }

  std::function<void(const std::string&)> then;  ///< within each callback
  conduit_host host = 0;

  conduit_host_callbacks callbacks = {
      .size = sizeof callbacks,
      .context = this,
      .log =
          [](void* context, std::int32_t level, const char*, const char* message) {
            Say(context, "log " + std::to_string(level) + " " + message);
          },
      .item = SayItem,
      .event = [](void* context, const char* name) { Say(context, std::string("event ") + name); },
      .begin = [](void* context) { Say(context, "begin"); },
      .end = [](void* context) { Say(context, "end"); },
      .script =
          [](void* context, const char* name) {
            Say(context, std::string("script ") + name);
            return 0;
          },
      .state = [](void* context, const char* text) { Say(context, std::string("state ") + text); },
      .error = [](void* context, const char* text) { Say(context, std::string("error ") + text); },
      .reader_line =
          [](void* context, std::int32_t level, const char* text, const char* document) {
            Say(context, "reader " + std::to_string(level) + " " + text + "/" + document);
          },
      .ended = [](void* context) { Say(context, "ended"); },
      .reader_log =
          [](void* context, const conduit_host_reader_line* line) {
            EXPECT_EQ(line->size, sizeof *line);
            if (*line->warning != '\0') {
              Say(context, "doubts " + std::to_string(line->level) + " " + line->warning);
            }
          },
  };

 private:
  std::mutex mutex;
  std::vector<std::string> said;
};

TEST_F(ConduitHost, HandsEverythingOnInOrderAndAgainInASecondRun) {
  Load(
      "reader 2024-05-01T09:30:00.120Z 1 document a.png\n"
      "reader 2024-05-01T09:30:00.120Z 1 warning document b.png: odd\nbegin\nitem NAME 4 41FF00\n"
      "item BARCODE_QRCODE 3 42 0 more\nmissing IMAGEIR\nask BAD_CHARS\nend\nerror Jam\nevent A\n"
      "nulls\nstorm\n" +
      std::string(End));
  EXPECT_EQ(conduit_host_follow_reader_log(host, nullptr), 0) << LastError();
  EXPECT_EQ(conduit_host_add_condition(host, "ReceiveEvent", "A"), 0);
  EXPECT_EQ(conduit_host_add_action(host, "ReceiveEvent", "A", "SetActiveScript", "greet"), 0);
  for (int run = 0; run < 2; ++run) {
    const std::size_t before = Said().size();
    ASSERT_EQ(conduit_host_initialise(host), 0) << LastError();
    ASSERT_EQ(conduit_host_wait(host, 60000), 0) << LastError();
    EXPECT_EQ(conduit_host_shutdown(host), 0);
    std::vector<std::string> now = Said();
    now.erase(now.begin(), now.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(std::erase_if(now,
                            [](const auto& one) {
                              return one.find("aaaa") != one.npos || one.find("bbbb") != one.npos ||
                                     one.find("cccc") != one.npos || one.find("dddd") != one.npos;
                            }),
              800);
    EXPECT_THAT(
        now,
        ElementsAre("state Enabled", "reader 1 document a.png/a.png",
                    "reader 1 warning: document b.png: odd/", "doubts 1 document b.png: odd",
                    "begin", std::string("item NAME A\xFF\0 - last", 20), "item BARCODE_QRCODE B 0",
                    "item IMAGEIR none - last", "item BAD_CHARS ? - last", "state answered 1",
                    "end", "error Jam", "error ", "script greet", "event A", "log 0 ", "event ",
                    "state ", "error ", "script ", "item  none - last", "error ",
                    "event DEVICE_DISCONNECTED", "state Terminated", "ended", "log 3 stopped"));
  }
}

/// Every function that works on a host, with arguments that are in order.
const std::vector<std::function<std::int32_t(conduit_host)>> CallsOnAHost = {
    [](conduit_host host) { return conduit_host_load(host, FakeModule); },
    [](conduit_host host) { return conduit_host_set_session(host, TEST_FOLDER); },
    [](conduit_host host) { return conduit_host_follow_reader_log(host, "log"); },
    [](conduit_host host) { return conduit_host_set_parameter(host, "Format", ""); },
    [](conduit_host host) { return conduit_host_get_parameter(host, "A", nullptr, 0, nullptr); },
    [](conduit_host host) {
      return conduit_host_list_parameters(
          host, [](auto...) {}, nullptr);
    },
    [](conduit_host host) { return conduit_host_add_condition(host, "A", "B"); },
    [](conduit_host host) { return conduit_host_add_action(host, "A", "B", "C", "D"); },
    [](conduit_host host) {
      return conduit_host_list_conditions(
          host, [](auto...) {}, nullptr);
    },
    conduit_host_initialise,
    conduit_host_shutdown,
    conduit_host_destroy,
    [](conduit_host host) { return conduit_host_wait(host, -1); },
};

TEST_F(ConduitHost, RefusesHandlesWithoutAHost) {
  conduit_host ended = 0;
  ASSERT_EQ(conduit_host_create(nullptr, &ended), 0);
  ASSERT_EQ(conduit_host_destroy(ended), 0);
  for (const conduit_host none : {ended, conduit_host(0), ~conduit_host(0)}) {
    for (const auto& call : CallsOnAHost) {
      EXPECT_EQ(call(none), CONDUIT_HOST_NO_SUCH_HOST);
    }
    EXPECT_EQ(conduit_host_interrupt(none), CONDUIT_HOST_NO_SUCH_HOST);
    char text[14];
    EXPECT_GT(conduit_host_last_error(none, text, sizeof text), sizeof text);
    EXPECT_STREQ(text, "there is no s");
  }
}

TEST_F(ConduitHost, RefusesEveryCallFromWithinACallbackAndGoesOn) {
  std::vector<std::int32_t> answers;
  then = [&](const std::string& what) {
    if (what == "begin") {
      for (const auto& call : CallsOnAHost) {
        answers.push_back(call(host));
      }
      EXPECT_EQ(conduit_host_create(&callbacks, &host), CONDUIT_HOST_IN_CALLBACK);
      EXPECT_EQ(conduit_host_interrupt(host), CONDUIT_HOST_SUCCESS);
    }
  };
  Start("begin\nevent A\n");
  EXPECT_EQ(conduit_host_wait(host, 60000), CONDUIT_HOST_INTERRUPTED);
  AwaitSaid("event A");
  EXPECT_EQ(conduit_host_shutdown(host), 0);
  EXPECT_EQ(answers, std::vector(CallsOnAHost.size(), std::int32_t(CONDUIT_HOST_IN_CALLBACK)));
  EXPECT_THAT(Said(), IsSupersetOf({"event A", "log 3 stopped"}));
}

TEST_F(ConduitHost, RefusesNullPointersAndNamesThem) {
  Load();
  const std::pair<std::int32_t, const char*> refusals[] = {
      {conduit_host_load(host, nullptr), "file"},
      {conduit_host_set_session(host, nullptr), "location"},
      {conduit_host_set_parameter(host, "Format", nullptr), "value"},
      {conduit_host_get_parameter(host, "Format", nullptr, 5, nullptr), "buffer"},
      {conduit_host_list_parameters(host, nullptr, nullptr), "entry"},
      {conduit_host_add_condition(host, nullptr, ""), "name"},
      {conduit_host_add_action(host, "", "", nullptr, ""), "action_name"},
      {conduit_host_list_conditions(host, nullptr, nullptr), "entry"},
  };
  for (const auto& [answer, name] : refusals) {
    EXPECT_EQ(answer, CONDUIT_HOST_NULL_POINTER) << name;
  }
  EXPECT_EQ(LastError(), "entry is null");
  EXPECT_EQ(conduit_host_create(&callbacks, nullptr), CONDUIT_HOST_NULL_POINTER);
  EXPECT_EQ(conduit_host_item_property(nullptr, nullptr), nullptr);
  EXPECT_STREQ(conduit_host_media_type(nullptr, 0), "");
  EXPECT_STREQ(conduit_host_media_type("BM", 2), "image/bmp");
}

TEST_F(ConduitHost, RefusesAWrongOrder) {
  for (std::size_t i = 2; i < 11; ++i) {
    EXPECT_EQ(CallsOnAHost[i](host), CONDUIT_HOST_NOT_LOADED) << i;
  }
  Load(End);
  EXPECT_EQ(conduit_host_load(host, FakeModule), CONDUIT_HOST_ALREADY_LOADED);
  EXPECT_EQ(conduit_host_shutdown(host), CONDUIT_HOST_NOT_RUNNING);
  EXPECT_EQ(conduit_host_wait(host, -1), CONDUIT_HOST_NOT_RUNNING);
  ASSERT_EQ(conduit_host_initialise(host), 0);
  for (const std::size_t i : {1U, 2U, 3U, 6U, 7U, 9U}) {
    EXPECT_EQ(CallsOnAHost[i](host), CONDUIT_HOST_RUNNING) << i;
  }
  EXPECT_EQ(LastError(), "the reader runs; shut it down first");
}

TEST_F(ConduitHost, RefusesACallBesideAnother) {
  then = [&](const std::string& what) {
    if (what == "state Enabled") {
      EXPECT_EQ(std::async([&] { return conduit_host_destroy(host); }).get(), CONDUIT_HOST_BUSY);
    }
  };
  Start(End);
  EXPECT_EQ(conduit_host_wait(host, -1), 0);
}

TEST_F(ConduitHost, EndsARunWhoseCallbackThrows) {
  then = [](const std::string& what) {
    if (what == "begin" || what.starts_with("log 0")) {
      throw std::runtime_error("no room for " + what);
    }
  };
  Start("begin\n" + std::string(End));
  EXPECT_EQ(conduit_host_wait(host, -1), CONDUIT_HOST_CALLBACK_FAILED);
  EXPECT_THAT(LastError(), HasSubstr("no room for begin"));
  EXPECT_EQ(conduit_host_shutdown(host), 0);
  conduit_host_set_parameter(host, "Level", "9");
  EXPECT_EQ(conduit_host_set_parameter(host, "Format", "x"), CONDUIT_HOST_CALLBACK_FAILED);
  EXPECT_THAT(LastError(), HasSubstr("no room for log 0 Level is too high"));
}

TEST_F(ConduitHost, StopsTheReaderBeforeItIsDestroyedAndLetsWaitersGo) {
  Start("begin\n");
  EXPECT_EQ(conduit_host_wait(host, 1), CONDUIT_HOST_TIMED_OUT);
  auto waiter = std::async([&] { return conduit_host_wait(host, -1); });
  EXPECT_EQ(conduit_host_destroy(host), 0);
  EXPECT_THAT(waiter.get(), testing::AnyOf(CONDUIT_HOST_NOT_RUNNING, CONDUIT_HOST_NO_SUCH_HOST));
  EXPECT_THAT(Said(),
              ElementsAre("log 3 ", "state Enabled", "begin", "log 3 stopped", "log 3 destroyed"));
}

TEST_F(ConduitHost, SaysWhyTheModuleRefuses) {
  Load("refuse\nlog 0 no device\nerror no device is there\n");
  EXPECT_EQ(conduit_host_set_parameter(host, "Level", "9"), 6);
  EXPECT_EQ(LastError(),
            "the module refuses Level=9 (result 6: the value breaks a rule)\n  Level is too high");
  EXPECT_EQ(conduit_host_add_condition(host, "ReceiveEvent", "NO_SUCH_EVENT"), 3);
  EXPECT_EQ(conduit_host_initialise(host), 13);
  EXPECT_THAT(LastError(), AllOf(HasSubstr("did not start (result 13"), HasSubstr("is there")));
  EXPECT_THAT(conduit_host_result_text(13), HasSubstr("refused"));
  EXPECT_EQ(conduit_host_set_session(host, "no-such-folder"), CONDUIT_HOST_CANNOT_READ);
  EXPECT_EQ(conduit_host_set_session(host, "watch:" FAKE_MODULE), CONDUIT_HOST_CANNOT_READ);
  EXPECT_THAT(LastError(), HasSubstr("it is no folder"));

  conduit_host other = 0;
  ASSERT_EQ(conduit_host_create(nullptr, &other), 0);
  EXPECT_EQ(conduit_host_load(other, TEST_FOLDER), CONDUIT_HOST_CANNOT_LOAD);
  EXPECT_EQ(conduit_host_destroy(other), 0);
}

TEST_F(ConduitHost, LoadsAgainAfterAModuleThatWasNotToBeHad) {
  for (const auto& [script, reason] :
       {std::pair("no memory", "answered 6"), std::pair("no room", "it threw no room")}) {
    PlayNext(script);
    EXPECT_EQ(conduit_host_load(host, FakeModule), CONDUIT_HOST_CANNOT_LOAD);
    EXPECT_THAT(LastError(), HasSubstr(reason));
  }
  Load();
}

TEST_F(ConduitHost, GivesParametersWhole) {
  ASSERT_EQ(conduit_host_load(host, MODULE_FILE), 0) << LastError();
  ASSERT_EQ(conduit_host_set_parameter(host, "BadChars", "*_!"), 0);
  char buffer[4] = "abc";
  std::size_t length = 0;
  EXPECT_EQ(conduit_host_get_parameter(host, "BadChars", buffer, 3, &length),
            CONDUIT_HOST_BUFFER_TOO_SMALL);
  EXPECT_STREQ(buffer, "abc");
  EXPECT_EQ(conduit_host_get_parameter(host, "BadChars", buffer, length + 1, nullptr), 0);
  EXPECT_STREQ(buffer, "*_!");
  const auto take = [](void* context, const char* name, const char* value) {
    static_cast<std::vector<std::string>*>(context)->push_back(std::string(name) + "=" + value);
  };
  std::vector<std::string> listed;
  EXPECT_EQ(conduit_host_list_parameters(host, take, &listed), 0);
  EXPECT_THAT(listed, IsSupersetOf({"BadChars=*_!", "DateOfBirthFormat="}));
  ASSERT_EQ(conduit_host_add_condition(host, "ReceiveEvent", "DOC_ON_WINDOW"), 0);
  EXPECT_EQ(conduit_host_list_conditions(host, take, &listed), 0);
  EXPECT_EQ(listed.back(), "ReceiveEvent=DOC_ON_WINDOW");
}

TEST(ConduitHostCallbacks, AreTakenFromCallersOfOtherVersions) {
  struct Later {
    conduit_host_callbacks known = {};
    void (*unknown)() = nullptr;
  } later;
  conduit_host host = 0;
  later.known.size = sizeof later;
  EXPECT_EQ(conduit_host_create(&later.known, &host), 0);
  EXPECT_EQ(conduit_host_destroy(host), 0);
  later.unknown = [] {};
  EXPECT_EQ(conduit_host_create(&later.known, &host), CONDUIT_HOST_WRONG_SIZE);
  later.known.size = offsetof(conduit_host_callbacks, reader_log);  // the first that there was
  EXPECT_EQ(conduit_host_create(&later.known, &host), 0);
  EXPECT_EQ(conduit_host_destroy(host), 0);
  later.known.size = 0;
  EXPECT_EQ(conduit_host_create(&later.known, &host), CONDUIT_HOST_WRONG_SIZE);
}

}  // namespace
