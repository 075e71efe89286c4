#include "qvtcctl/advice.hpp"
#include "qvtcctl/assignments.hpp"
#include "qvtcctl/change_lock.hpp"
#include "qvtcctl/connection_verbs.hpp"
#include "qvtcctl/device.hpp"
#include "qvtcctl/notes.hpp"
#include "qvtcctl/password.hpp"
#include "qvtcctl/presentation.hpp"
#include "qvtcctl/refusal.hpp"
#include "qvtcctl/secrets.hpp"
#include "qvtcctl/validation.hpp"

#include <algorithm>
#include <memory>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace qvtc::qvtcctl {
namespace {

struct PasswordOptions {
    bool password = false;
    bool password_stdin = false;
    bool gateway = false;
    bool gateway_stdin = false;

    bool any() const { return password || password_stdin || gateway || gateway_stdin; }
};

void define_password_options(CLI::App& app, PasswordOptions& options) {
    app.add_flag("--password", options.password, "ask for the password");
    app.add_flag("--password-stdin", options.password_stdin,
                 "read the password from standard input");
    app.add_flag("--gateway-password", options.gateway, "ask for the gateway's password");
    app.add_flag("--gateway-password-stdin", options.gateway_stdin,
                 "read the gateway's password from standard input");
}

void require_one_way(bool asked, bool read, std::string_view name) {
    if (asked && read) {
        throw UsageError(fmt::format("--{0} and --{0}-stdin cannot be used together.", name));
    }
}

/// The passwords that the options ask for, in their stored form.
std::vector<Assignment> collect_passwords(const PasswordOptions& options,
                                          const ConnectionType& type) {
    require_one_way(options.password, options.password_stdin, "password");
    require_one_way(options.gateway, options.gateway_stdin, "gateway-password");
    std::vector<Assignment> collected;
    const auto collect = [&](bool ask, bool read, std::size_t field, const std::string& what) {
        if (!ask && !read) return;
        const std::string password = ask ? ask_for_password(what) : read_password_line(what);
        require_password(fields[field], type, password);
        collected.push_back({field, stored_password(type, password)});
    };
    collect(options.password, options.password_stdin, field_index("password"), "password");
    collect(options.gateway, options.gateway_stdin, field_index("rdGatewayPassword"),
            "gateway password");
    if (options.password_stdin || options.gateway_stdin) require_end_of_input();
    return collected;
}

std::vector<std::size_t> named_fields(const std::vector<Assignment>& assignments,
                                      const std::vector<Assignment>& passwords) {
    std::vector<std::size_t> named;
    for (const auto* list : {&assignments, &passwords}) {
        for (const Assignment& assignment : *list) named.push_back(assignment.field);
    }
    return named;
}

void put(const std::vector<Assignment>& passwords, Record& record) {
    for (const Assignment& password : passwords) record[password.field] = password.value;
}

/// What came of it: the word for a person, and whether anything was stored.
struct Outcome {
    std::string_view word;
    bool changed;
};
constexpr Outcome added{"Added", true};
constexpr Outcome changed{"Changed", true};
constexpr Outcome unchanged{"Unchanged:", false};

Answer changed_answer(const Outcome& outcome, unsigned id, const Record& record,
                      std::vector<std::string> notes) {
    Answer answer;
    answer.text = fmt::format("{} connection {}.\n", outcome.word, label_of(id, record));
    answer.json = json_map();
    add_flag(answer.json, "changed", outcome.changed);
    add(answer.json, "connection", record_json(record, Passwords::hidden, true));
    add_notes(answer, std::move(notes));
    return answer;
}

} // namespace

Run define_add(CLI::App& app) {
    struct Options {
        std::string type;
        std::vector<std::string> words;
        PasswordOptions passwords;
    };
    auto options = std::make_shared<Options>();
    app.add_option("TYPE", options->type, "type of the connection")->required();
    app.add_option("FIELD", options->words, "the values of its fields")->required();
    define_password_options(app, options->passwords);
    return [options](const Context& context) {
        const ConnectionType& type = require_type(options->type);
        const std::vector<Assignment> assignments = parse_assignments(options->words);
        Record record = new_record(type);
        apply(assignments, type, record);
        require_usable(type, record);
        const Device device(context.chatter());
        const std::vector<Assignment> passwords = collect_passwords(options->passwords, type);
        put(passwords, record);
        const ChangeLock lock;
        const unsigned id = device.add(type, record);
        record.set_identity(id, type);
        return changed_answer(added, id, record,
                              advice_on(type, record, named_fields(assignments, passwords)));
    };
}

Run define_set(CLI::App& app) {
    struct Options {
        std::string id;
        std::vector<std::string> words;
        PasswordOptions passwords;
    };
    auto options = std::make_shared<Options>();
    app.add_option("ID", options->id, "number of the connection")->required();
    app.add_option("FIELD", options->words, "the fields to change; an empty VALUE clears");
    define_password_options(app, options->passwords);
    return [options](const Context& context) {
        const unsigned id = require_id(options->id);
        const ConnectionType& type = require_type_of_id(id);
        if (options->words.empty() && !options->passwords.any()) {
            throw UsageError("nothing to change: give a FIELD=VALUE or a password.");
        }
        const std::vector<Assignment> assignments = parse_assignments(options->words);
        Record trial;
        apply(assignments, type, trial);
        const Device device(context.chatter());
        device.record(id); // nobody should type a password for a connection that does not exist
        const std::vector<Assignment> passwords = collect_passwords(options->passwords, type);
        const ChangeLock lock;
        const Record before = device.record(id);
        Record record = before;
        apply(assignments, type, record);
        put(passwords, record);
        record.set_identity(id, type);
        require_carried(record);
        require_usable(type, record);
        // A document that need not be written is not: other readers would take it for a change.
        if (record != before) device.store(type, record);
        return changed_answer(record != before ? changed : unchanged, id, record,
                              advice_on(type, record, named_fields(assignments, passwords)));
    };
}

Run define_remove(CLI::App& app) {
    auto words = std::make_shared<std::vector<std::string>>();
    app.add_option("ID", *words, "numbers of the connections")->required();
    return [words](const Context& context) {
        std::vector<unsigned> ids;
        for (const std::string& word : *words) {
            const unsigned id = require_id(word);
            if (std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
        }
        const Device device(context.chatter());
        const ChangeLock lock;
        std::vector<Record> records;
        records.reserve(ids.size());
        for (const unsigned id : ids) records.push_back(device.record(id));
        Answer answer;
        Json removed = json_list();
        for (std::size_t i = 0; i < ids.size(); ++i) {
            device.remove(ids[i]);
            answer.text += fmt::format("Removed connection {}.\n", label_of(ids[i], records[i]));
            append(removed, Json(json_object_new_int64(ids[i])));
        }
        answer.json = json_map();
        add(answer.json, "removed", std::move(removed));
        return answer;
    };
}

} // namespace qvtc::qvtcctl
