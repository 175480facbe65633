#include "tests/support/TerminalRace.h"

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <thread>

#include "db/postgres/PostgresDatabase.h"
#include "tests/support/GoldenStatements.h"

namespace qx::test {

const char* const kDocumentMasterData =
    "INSERT INTO D1006 (M_ID, M_NAME, M0, M1, M2, BS0, BS1, BS2) VALUES ('A','服装码','S','M','L','s','m','l');"
    "INSERT INTO D1005 (COL_ID, COL_NAME, S) VALUES ('01','黑色','BK');"
    "INSERT INTO D1005 (COL_ID, COL_NAME, S) VALUES ('02','白色','WH');"
    "INSERT INTO D1005 (COL_ID, COL_NAME, S) VALUES ('03','红色','RD');"
    "INSERT INTO D1007 (CK_ID, CK_NAME) VALUES ('01','总仓');"
    "INSERT INTO D1800 (K_ID, M_ID, WL_NAME, CHECK_KC, TMI, DJ) VALUES ('K01','A','衬衫',1,2,25);"
    "INSERT INTO D1800 (K_ID, M_ID, WL_NAME, CHECK_KC, TMI, DJ) VALUES ('K02','A','长裤',0,0,40);"
    "INSERT INTO sys_co (CO, PARAM) VALUES ('测试公司','');";

namespace {

constexpr const char* kShortage = "库存不足支持本次出库业务";

std::string oneLine(std::string text) {
    for (char& c : text)
        if (c == '\n' || c == '\r' || c == '\t') c = ' ';
    return text;
}

std::string withNumber(const std::string& batch, const std::string& number) {
    std::string out = batch;
    const std::string key = "${number}";
    for (auto at = out.find(key); at != std::string::npos; at = out.find(key, at + number.size())) out.replace(at, key.size(), number);
    return out;
}

// One terminal: its own connection, documents until the end, every outcome into `report`.
int terminal(const std::string& location, const RaceBatches& batches, const RaceOptions& options, int index,
             std::chrono::system_clock::time_point start, const std::string& report) {
    std::ofstream out(report);
    try {
        auto db = db::openDatabase(location);
        std::mt19937 random(options.seed * 7919u + static_cast<unsigned>(index));
        std::uniform_int_distribution<int> percent(0, 99);
        std::this_thread::sleep_until(start);
        const auto end = start + std::chrono::duration_cast<std::chrono::system_clock::duration>(std::chrono::duration<double>(options.seconds));
        while (std::chrono::system_clock::now() < end) {
            const bool purchase = percent(random) < options.purchasePercent;
            const std::string number = db->nextDocumentNumber(purchase ? "201" : "211");
            try {
                db->execute(withNumber(purchase ? batches.purchase : batches.sale, number));
                out << (purchase ? "P " : "S ") << number << "\n";
            } catch (const db::Error& e) {
                const std::string message = oneLine(e.what());
                // a refusal is recorded with its message (the checks want it exact)
                if (!purchase && message.find(kShortage) != std::string::npos) out << "R " << number << "\t" << message << "\n";
                else if (message.rfind("the batch collided with other terminals' work", 0) == 0) out << "G " << number << "\t" << message << "\n";
                else out << "F terminal " << index << ", " << number << ": " << message << "\n";
            }
        }
        if (auto* server = dynamic_cast<db::PostgresDatabase*>(db.get())) out << "T " << server->retriedBatches() << "\n";
    } catch (const std::exception& e) {
        out << "F terminal " << index << ": " << oneLine(e.what()) << "\n";
    }
    out.flush();
    return out ? 0 : 2;
}

long long number(db::Database& shop, const std::string& sql) {
    const auto r = shop.open(sql);
    if (r.rows.size() != 1 || r.rows[0].empty()) throw std::runtime_error("not one value: " + sql);
    const auto& v = r.rows[0][0];
    if (auto* i = std::get_if<std::int64_t>(&v)) return *i;
    if (auto* d = std::get_if<double>(&v)) return static_cast<long long>(*d);
    if (auto* s = std::get_if<std::string>(&v)) return std::stoll(*s);
    return 0;
}

std::string inList(const std::vector<std::string>& numbers) {
    std::string list;
    for (const auto& n : numbers) list += (list.empty() ? "'" : ",'") + n + "'";
    return list.empty() ? "''" : list;
}

}  // namespace

RaceBatches RaceBatches::fromGoldenFiles() {
    const GoldenStatements purchase("documents/golden/Frmqxck201_1.sql"), sales("documents/golden/Frmqxck211_1.sql");
    return {purchase.text("Add").toStdString(), sales.text("Add").toStdString()};
}

RaceOutcome runTerminalRace(const std::string& location, const RaceBatches& batches, const RaceOptions& options) {
    namespace fs = std::filesystem;
    std::string folder = (fs::temp_directory_path() / "qx-race-XXXXXX").string();
    if (!mkdtemp(folder.data())) throw std::runtime_error("cannot create a folder for the terminals' reports");
    auto report = [&](int t) { return folder + "/terminal-" + std::to_string(t); };

    // Every terminal connects first, then all start at the same instant.
    const auto start = std::chrono::system_clock::now() + std::chrono::milliseconds(500);
    std::vector<pid_t> children;
    for (int t = 0; t < options.terminals; ++t) {
        std::fflush(nullptr);
        const pid_t pid = fork();
        if (pid < 0) throw std::runtime_error("fork failed");
        if (pid == 0) _exit(terminal(location, batches, options, t, start, report(t)));
        children.push_back(pid);
    }
    RaceOutcome outcome;
    for (pid_t pid : children) {
        int status = 0;
        if (waitpid(pid, &status, 0) != pid || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
            outcome.failures.push_back("a terminal process ended abnormally (status " + std::to_string(status) + ")");
    }
    outcome.seconds = std::chrono::duration<double>(std::chrono::system_clock::now() - start).count();
    for (int t = 0; t < options.terminals; ++t) {
        std::ifstream in(report(t));
        for (std::string line; std::getline(in, line);) {
            if (line.size() < 2) continue;
            const std::string rest = line.substr(2);
            const auto tab = rest.find('\t');
            switch (line[0]) {
                case 'P': outcome.purchases.push_back(rest); break;
                case 'S': outcome.sales.push_back(rest); break;
                case 'R':
                    outcome.refused.push_back(rest.substr(0, tab));
                    outcome.refusals.push_back(tab == std::string::npos ? "" : rest.substr(tab + 1));
                    break;
                case 'G': outcome.gaveUp.push_back(rest); break;
                case 'T': outcome.retries += std::stoll(rest); break;
                default: outcome.failures.push_back(rest); break;
            }
        }
    }
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    return outcome;
}

std::vector<std::string> raceDamage(db::Database& shop, const RaceOutcome& outcome) {
    std::vector<std::string> damage;
    auto expect = [&](long long actual, long long expected, const std::string& what) {
        if (actual != expected) damage.push_back(what + ": " + std::to_string(actual) + " instead of " + std::to_string(expected));
    };
    const long long p = static_cast<long long>(outcome.purchases.size()), s = static_cast<long long>(outcome.sales.size());

    // No lost update: every stock row is what the documents add up to.
    expect(number(shop, "SELECT COUNT(*) FROM V_CHECKKC"), 0, "stock rows differing from their recomputation (V_CHECKKC)");
    expect(number(shop, "SELECT K0 FROM d1802 WHERE WL_ID='K0102' AND CK_ID='01'"), 3 * p - 3 * s, "K0102 size S in stock");
    expect(number(shop, "SELECT K1 FROM d1802 WHERE WL_ID='K0102' AND CK_ID='01'"), 2 * p - s, "K0102 size M in stock");
    if (s > 0) expect(number(shop, "SELECT K1 FROM d1802 WHERE WL_ID='K0203' AND CK_ID='01'"), -2 * s, "K0203 size M in stock");

    // The guard held: no checked row below zero, every refusal in its words.
    expect(number(shop, "SELECT COUNT(*) FROM d1802 WHERE CHECK_KC=1 AND (K0<0 OR K1<0 OR K2<0 OR K3<0 OR K4<0 OR K5<0 OR K6<0 OR "
                        "K7<0 OR K8<0 OR K9<0)"),
           0, "checked stock rows below zero");
    for (std::size_t i = 0; i < outcome.refusals.size(); ++i)
        if (outcome.refusals[i] != "库存不足支持本次出库业务")
            damage.push_back("sale " + outcome.refused[i] + " refused with \"" + outcome.refusals[i] + "\"");

    // Whole documents only: each saved one with its head and all its lines, nothing of a refused
    // or given-up one, no head without lines and no line without its head.
    expect(number(shop, "SELECT COUNT(*) FROM D8101"), p, "purchase receipt heads");
    expect(number(shop, "SELECT COUNT(*) FROM D8101A"), p, "purchase receipt lines");
    expect(number(shop, "SELECT COUNT(*) FROM D8201"), s, "sales ticket heads");
    expect(number(shop, "SELECT COUNT(*) FROM D8201A"), 2 * s, "sales ticket lines");
    if (p > 0) expect(number(shop, "SELECT COUNT(*) FROM D8101 WHERE NOID IN (" + inList(outcome.purchases) + ")"), p, "saved receipts found");
    if (s > 0) expect(number(shop, "SELECT COUNT(*) FROM D8201A WHERE NOID IN (" + inList(outcome.sales) + ")"), 2 * s, "saved tickets' lines found");
    expect(number(shop, "SELECT COUNT(*) FROM D8201 WHERE NOID IN (" + inList(outcome.refused) + ")"), 0, "refused tickets' heads kept");
    expect(number(shop, "SELECT COUNT(*) FROM D8101 h WHERE NOT EXISTS (SELECT 1 FROM D8101A l WHERE l.NOID = h.NOID)"), 0,
           "receipt heads without lines");
    expect(number(shop, "SELECT COUNT(*) FROM D8101A l WHERE NOT EXISTS (SELECT 1 FROM D8101 h WHERE h.NOID = l.NOID)"), 0,
           "receipt lines without a head");
    expect(number(shop, "SELECT COUNT(*) FROM D8201 h WHERE NOT EXISTS (SELECT 1 FROM D8201A l WHERE l.NOID = h.NOID)"), 0,
           "ticket heads without lines");
    expect(number(shop, "SELECT COUNT(*) FROM D8201A l WHERE NOT EXISTS (SELECT 1 FROM D8201 h WHERE h.NOID = l.NOID)"), 0,
           "ticket lines without a head");
    // The SKU register and the barcodes of the style the receipts brought, once each.
    if (p > 0) {
        expect(number(shop, "SELECT COUNT(*) FROM D1801 WHERE WL_ID='K0102'"), 1, "SKU rows of K0102");
        expect(number(shop, "SELECT COUNT(*) FROM D1809 WHERE WL_ID='K0102'"), 3, "barcodes of K0102");
    }
    return damage;
}

}  // namespace qx::test
