#include "db/tools/DemoData.h"

#include "db/postgres/PostgresDatabase.h"
#include "db/tools/Random.h"

// GCC 12 reports a false -Wrestrict on "literal" + std::string temporaries (GCC bug 105329).
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wrestrict"
#endif

#include <openssl/evp.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <map>
#include <vector>

#include "db/sqlite/SqliteDatabase.h"

namespace qx::demo {
namespace {

using Sizes = std::array<int, 10>;

// ---- small helpers ----------------------------------------------------------------------------


// A value between single quotes, embedded quotes doubled.
std::string q(const std::string& text) {
    std::string out = "'";
    for (char c : text) {
        out += c;
        if (c == '\'') out += '\'';
    }
    return out + "'";
}

std::string num(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.2f", value);
    return buffer;
}

std::string pad(int value, int width) {
    std::string digits = std::to_string(value);
    return std::string(width > static_cast<int>(digits.size()) ? width - digits.size() : 0, '0') + digits;
}

using Day = std::chrono::sys_days;

Day parseDay(const std::string& text) {
    int y = 0, m = 0, d = 0;
    if (std::sscanf(text.c_str(), "%d-%d-%d", &y, &m, &d) != 3) throw db::Error("demo: bad date " + text);
    return Day(std::chrono::year(y) / m / d);
}

std::string dayText(Day day) {
    const std::chrono::year_month_day ymd(day);
    return pad(static_cast<int>(ymd.year()), 4) + "-" + pad(static_cast<unsigned>(ymd.month()), 2) + "-" +
           pad(static_cast<unsigned>(ymd.day()), 2);
}

std::string stamp(Day day, int hour, int minute) {
    return dayText(day) + " " + pad(hour, 2) + ":" + pad(minute, 2) + ":00";
}

std::string yymm(Day day) {
    const std::string t = dayText(day);
    return t.substr(2, 2) + t.substr(5, 2);
}

std::string today() {
    const auto now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    localtime_r(&now, &local);
    return pad(local.tm_year + 1900, 4) + "-" + pad(local.tm_mon + 1, 2) + "-" + pad(local.tm_mday, 2);
}

std::string sizeList(const Sizes& s) {
    std::string out;
    for (int i = 0; i < 10; ++i) out += (i ? "," : "") + q(std::to_string(s[i]));
    return out;
}

int total(const Sizes& s) {
    int t = 0;
    for (int v : s) t += v;
    return t;
}

// ---- the shop's master data -------------------------------------------------------------------

struct SizeGroup {
    const char* id;
    const char* name;
    const char* pym;
    std::vector<const char*> names;
    std::vector<const char*> marks;
    std::vector<int> weights;  // how often each size sells
};

const std::vector<SizeGroup>& sizeGroups() {
    static const std::vector<SizeGroup> groups = {
        {"A", "服装码", "FZM", {"S", "M", "L", "XL", "2XL", "3XL"}, {"S", "M", "L", "XL", "2X", "3X"}, {2, 4, 5, 4, 2, 1}},
        {"B", "腰围码", "YWM", {"26", "27", "28", "29", "30", "31", "32", "33", "34", "36"},
         {"26", "27", "28", "29", "30", "31", "32", "33", "34", "36"}, {1, 2, 3, 4, 4, 4, 3, 2, 1, 1}},
        {"C", "童装码", "TZM", {"90", "100", "110", "120", "130", "140", "150", "160"},
         {"09", "10", "11", "12", "13", "14", "15", "16"}, {1, 2, 3, 3, 3, 2, 2, 1}},
        {"D", "鞋码", "XM", {"35", "36", "37", "38", "39", "40", "41", "42", "43", "44"},
         {"35", "36", "37", "38", "39", "40", "41", "42", "43", "44"}, {1, 2, 3, 3, 3, 3, 3, 2, 1, 1}},
    };
    return groups;
}

struct StyleClass {
    const char* id;
    const char* name;
    const char* pym;
    int group;  // index into sizeGroups()
    const char* unit;
    const char* brand;
    std::vector<const char*> nouns;
    int priceLo, priceHi;  // purchase price range
};

const std::vector<StyleClass>& styleClasses() {
    static const std::vector<StyleClass> classes = {
        {"01", "T恤", "TX", 0, "件", "01", {"圆领T恤", "V领T恤", "印花T恤", "短袖T恤"}, 30, 80},
        {"02", "衬衫", "CS", 0, "件", "02", {"长袖衬衫", "牛津纺衬衫", "格子衬衫", "短袖衬衫"}, 55, 150},
        {"03", "外套", "WT", 0, "件", "01", {"夹克", "风衣", "羽绒服", "棉服", "西装外套"}, 150, 450},
        {"04", "连衣裙", "LYQ", 0, "条", "02", {"碎花连衣裙", "针织连衣裙", "雪纺连衣裙"}, 90, 260},
        {"05", "休闲裤", "XXK", 1, "条", "01", {"休闲长裤", "九分裤", "工装裤"}, 70, 160},
        {"06", "牛仔裤", "NZK", 1, "条", "05", {"直筒牛仔裤", "修身牛仔裤", "阔腿牛仔裤"}, 80, 180},
        {"07", "童装", "TZ", 2, "件", "03", {"儿童卫衣", "儿童套装", "儿童外套", "儿童T恤"}, 40, 120},
        {"08", "运动鞋", "YDX", 3, "双", "04", {"跑步鞋", "板鞋", "休闲运动鞋"}, 120, 320},
        {"09", "皮鞋", "PX", 3, "双", "04", {"商务皮鞋", "乐福鞋", "切尔西靴"}, 150, 400},
    };
    return classes;
}

struct Brand {
    const char* id;
    const char* name;
    const char* pym;
};
const std::vector<Brand> kBrands = {
    {"01", "雅格", "YG"}, {"02", "森语", "SY"}, {"03", "童趣", "TQ"}, {"04", "步履", "BL"}, {"05", "蓝调", "LD"}};

struct Colour {
    const char* id;
    const char* name;
    const char* pym;
};
const std::vector<Colour> kColours = {
    {"01", "黑色", "HS"}, {"02", "白色", "BS"}, {"03", "红色", "HS"}, {"04", "藏青", "ZQ"},
    {"05", "灰色", "HS"}, {"06", "卡其", "KQ"}, {"07", "粉色", "FS"}, {"08", "浅蓝", "QL"},
    {"09", "军绿", "JL"}, {"10", "米色", "MS"}, {"11", "咖啡", "KF"}, {"12", "酒红", "JH"}};

const std::vector<const char*> kAdjectives = {"纯棉", "亚麻", "弹力", "经典", "时尚", "简约", "复古", "轻薄", "加厚", "百搭"};

struct Warehouse {
    const char* id;
    const char* name;
    const char* pym;
    const char* manager;
    const char* address;
};
const std::vector<Warehouse> kWarehouses = {
    {"ZC", "总仓", "ZC", "王建国", "上海市闵行区虹梅南路 1888 号"},
    {"MD01", "南京路店", "NJLD", "李娜", "上海市黄浦区南京东路 300 号"},
    {"MD02", "淮海路店", "HHLD", "张敏", "上海市黄浦区淮海中路 520 号"},
    {"MD03", "徐家汇店", "XJHD", "陈静", "上海市徐汇区漕溪北路 88 号"},
    {"MD04", "五角场店", "WJCD", "刘洋", "上海市杨浦区淞沪路 77 号"}};
constexpr int kHead = 0;
constexpr int kShops = 4;

struct Style {
    std::string id;
    const StyleClass* cls;
    std::vector<int> colours;  // indexes into kColours
    double cost;               // purchase price
    double tag;                // tag price
    int tmi;
    int checkStock;
};

struct Sku {
    std::string id;  // style + colour
    int style;
    int colour;
};

// ---- generation -------------------------------------------------------------------------------

class Generator {
public:
    Generator(db::Database& database, const Options& options)
        : db_(database), options_(options), random_(options.seed), scale_(std::max(1, options.scale)) {
        end_ = parseDay(options.endDate.empty() ? today() : options.endDate);
        start_ = end_ - std::chrono::days(364);
    }

    Summary run() {
        masterData();
        styles();
        openingStock();
        for (Day day = start_; day <= end_; day += std::chrono::days(1)) businessDay(day);
        openStocktake();
        settings();
        flush();
        summary_.firstDate = dayText(start_);
        summary_.lastDate = dayText(end_);
        summary_.styles = static_cast<int>(styles_.size());
        summary_.skus = static_cast<int>(skus_.size());
        return summary_;
    }

private:
    // Statements go out in large batches: one transaction each.
    void add(std::string statement) {
        batch_ += statement;
        batch_ += ";\n";
        if (++pending_ >= 800) flush();
    }
    void flush(bool maintenance = false) {
        if (pending_ == 0) return;
        db_.execute(batch_, db::ExecOptions{maintenance});
        batch_.clear();
        pending_ = 0;
    }

    std::string number(const char* func, Day day) {
        const std::string key = std::string(func) + yymm(day);
        return db::formatDocumentNumber(func, yymm(day), ++counters_[key]);
    }

    Sizes& stock(int sku, int warehouse) { return stock_[{sku, warehouse}]; }

    // A size curve for a style: quantities by the size group's weights times `factor`.
    Sizes curve(const Style& style, int factor) {
        const auto& group = sizeGroups()[style.cls->group];
        Sizes s{};
        for (std::size_t i = 0; i < group.weights.size(); ++i)
            s[i] = std::max(0, group.weights[i] * factor + random_.between(-1, 1));
        return s;
    }

    // ---- master data ----

    void masterData() {
        for (const auto& b : kBrands)
            add("INSERT INTO D1009 (PP_ID, PP_NAME, PYM) VALUES (" + q(b.id) + "," + q(b.name) + "," + q(b.pym) + ")");
        for (const auto& c : styleClasses())
            add("INSERT INTO D1004 (CLASS_ID, CLASS_NAME, CLASS_NOTE, OID, PYM) VALUES (" + q(c.id) + "," + q(c.name) +
                ",null,'Z'," + q(c.pym) + ")");
        for (const auto& c : kColours)
            add("INSERT INTO D1005 (COL_ID, COL_NAME, PYM, S, PP_ID) VALUES (" + q(c.id) + "," + q(c.name) + "," +
                q(c.pym) + "," + q(c.id) + ",'')");
        for (const auto& g : sizeGroups()) {
            std::string cols = "M_ID, M_NAME, PYM", values = q(g.id) + "," + q(g.name) + "," + q(g.pym);
            for (std::size_t i = 0; i < g.names.size(); ++i) {
                cols += ", M" + std::to_string(i) + ", BS" + std::to_string(i);
                values += "," + q(g.names[i]) + "," + q(g.marks[i]);
            }
            add("INSERT INTO D1006 (" + cols + ") VALUES (" + values + ")");
        }
        for (const auto& w : kWarehouses)
            add("INSERT INTO D1007 (CK_ID, CK_NAME, CK_GL, CK_TEL, CK_ADDR, CK_NOTE, OID, PYM, CS_DATE, G1) VALUES (" +
                q(w.id) + "," + q(w.name) + "," + q(w.manager) + ",'021-6" + pad(random_.between(1000000, 9999999), 7) +
                "'," + q(w.address) + ",'','Z'," + q(w.pym) + "," + q(dayText(start_)) + ",0)");
        const std::vector<std::pair<const char*, const char*>> departments = {{"01", "采购部"}, {"02", "批发部"}, {"03", "零售部"}};
        for (const auto& [id, name] : departments)
            add("INSERT INTO D1008 (BM_ID, BM_NAME) VALUES (" + q(id) + "," + q(name) + ")");
        const std::vector<std::pair<const char*, const char*>> settlements = {
            {"0", "待结"}, {"1", "现金"}, {"2", "月结"}, {"3", "转账"}, {"4", "微信支付"}, {"5", "支付宝"}};
        for (const auto& [id, name] : settlements)
            add("INSERT INTO D1010 (JY_ID, JY_NAME) VALUES (" + q(id) + "," + q(name) + ")");
        const std::vector<std::pair<const char*, const char*>> deliveries = {{"01", "送货上门"}, {"02", "自提"}, {"03", "快递"}, {"04", "物流"}};
        for (const auto& [id, name] : deliveries)
            add("INSERT INTO D1011 (SEND_ID, SEND_NAME) VALUES (" + q(id) + "," + q(name) + ")");
        const std::vector<std::pair<const char*, const char*>> people = {
            {"Y01", "周强"}, {"Y02", "吴丽"}, {"Y03", "郑浩"}, {"Y04", "孙悦"}, {"Y05", "钱磊"}, {"Y06", "冯雪"}};
        for (std::size_t i = 0; i < people.size(); ++i) {
            add("INSERT INTO D1101 (YW_ID, YW_NAME, BM_ID) VALUES (" + q(people[i].first) + "," + q(people[i].second) +
                "," + q(i < 2 ? "01" : i < 4 ? "02" : "03") + ")");
            salespeople_.push_back(people[i].first);
        }
        partners("D1103", "G", suppliers_, {"广州", "杭州", "宁波", "东莞", "泉州", "常熟"},
                 {"服饰有限公司", "制衣厂", "鞋业有限公司", "纺织品公司"}, 12);
        partners("D1102", "K", customers_, {"苏州", "无锡", "南通", "嘉兴", "合肥", "南京"},
                 {"服装商行", "百货商店", "时装店", "批发部"}, 15);
        members();
        users();
    }

    void partners(const char* table, const char* prefix, std::vector<std::string>& ids,
                  const std::vector<const char*>& cities, const std::vector<const char*>& kinds, int count) {
        const std::vector<const char*> words = {"华美", "恒丰", "锦绣", "新潮", "佳艺", "鸿运", "天成", "明珠", "东方", "金鹰"};
        for (int i = 1; i <= count * scale_; ++i) {
            const std::string id = std::string(prefix) + pad(i, 4);
            const std::string city = random_.pick(cities);
            const std::string word = random_.pick(words);
            const std::string name = city + word + random_.pick(kinds);
            add(std::string("INSERT INTO ") + table +
                " (KH_GYS_ID, KG_NAME, PYM, FULL_NAME, FZR, TEL, ADDR, SEND_ID, BDATE, BEGIN_MONEY, NOTE) VALUES (" + q(id) +
                "," + q(city + word) + "," + q(id) + "," + q(name) + ",'" + "联系人" + std::to_string(i) + "','13" +
                pad(random_.between(100000000, 999999999), 9) + "'," + q(city + "市") + ",'01'," + q(dayText(start_)) +
                ",0,'')");
            ids.push_back(id);
        }
    }

    void members() {
        const std::vector<const char*> surnames = {"王", "李", "张", "刘", "陈", "杨", "黄", "赵", "吴", "周", "徐", "孙"};
        const std::vector<const char*> given = {"芳", "伟", "娜", "敏", "静", "丽", "强", "磊", "洋", "艳", "杰", "婷"};
        for (int i = 1; i <= 200 * scale_; ++i) {
            const std::string id = "V" + pad(i, 6);
            add("INSERT INTO D702 (VIPID, VIPNAME, PYM, VIPTEL, BDATE, EDATE, VIPGRARD, VIPZK, VIPF, T) VALUES (" + q(id) +
                "," + q(std::string(random_.pick(surnames)) + random_.pick(given)) + ",''," + "'13" +
                pad(random_.between(100000000, 999999999), 9) + "'," + q(dayText(start_)) + ",'2099-12-31'," +
                q(random_.chance(20) ? "金卡" : "普通") + "," + (random_.chance(20) ? "88" : "95") + ",0,1)");
            members_.push_back(id);
        }
    }

    void users() {
        struct User {
            const char* id;
            const char* name;
            const char* password;
            int shop;  // -1 = every warehouse
        };
        const std::vector<User> users = {{"admin", "管理员", "admin", -1},  {"cg01", "采购员", "123456", 0},
                                         {"md01", "南京路店长", "123456", 1}, {"md02", "淮海路店长", "123456", 2},
                                         {"md03", "徐家汇店长", "123456", 3}, {"md04", "五角场店长", "123456", 4},
                                         // the stocktake summary reads warehouse rights of user "01"
                                         {"01", "盘点", "123456", -1}};
        for (const auto& u : users) {
            std::string salt;
            for (int i = 0; i < 4; ++i) {
                char part[9];
                std::snprintf(part, sizeof part, "%08x", static_cast<unsigned>(random_.next() & 0xffffffffu));
                salt += part;
            }
            add("INSERT INTO sys_user (USER_ID, USER_NAME, PWD_SALT, PWD_HASH) VALUES (" + q(u.id) + "," + q(u.name) + "," +
                q(salt) + "," + q(passwordHash(salt, u.password)) + ")");
            for (int w = 0; w < static_cast<int>(kWarehouses.size()); ++w) {
                const bool own = u.shop < 0 || u.shop == w;
                const bool reads = own || u.shop == 0;  // the buyer sees every shop
                if (reads) add("INSERT INTO sys_user_ck VALUES (" + q(u.id) + "," + q(kWarehouses[w].id) + "," + (own ? "1" : "0") + ")");
            }
        }
    }

    void styles() {
        const auto& classes = styleClasses();
        const int count = 200 * scale_;
        std::map<std::string, int> serials;
        for (int n = 0; n < count; ++n) {
            const StyleClass& cls = classes[n % classes.size()];
            const Brand& brand = kBrands[std::stoi(cls.brand) - 1];
            const std::string year = dayText(start_).substr(2, 2);
            const std::string id = std::string(brand.pym) + year + cls.id + pad(++serials[std::string(brand.pym) + cls.id], 4);
            Style style{id, &cls, {}, 0, 0, 0, 0};
            const int colours = random_.between(2, 4);
            while (static_cast<int>(style.colours.size()) < colours) {
                const int c = random_.between(0, static_cast<int>(kColours.size()) - 1);
                if (std::find(style.colours.begin(), style.colours.end(), c) == style.colours.end()) style.colours.push_back(c);
            }
            style.cost = random_.between(cls.priceLo, cls.priceHi);
            style.tag = static_cast<int>(style.cost * 2.5 / 10) * 10 + 9;
            const int rule = random_.between(1, 100);
            style.tmi = rule <= 60 ? 2 : rule <= 80 ? 3 : rule <= 92 ? 0 : 1;
            style.checkStock = random_.chance(25) ? 1 : 0;
            const std::string name = std::string(random_.pick(kAdjectives)) + random_.pick(cls.nouns);
            const char* seasons[] = {"春", "夏", "秋", "冬"};
            add("INSERT INTO D1800 (K_ID, PP_ID, M_ID, CLASS_ID, WL_NAME, DW_NAME, WL_YS, KC, DJ, CGJ, PFJ, PP, GHS, CL, "
                "MONEY, USER_ID, BDATE, EDATE, T, NOTE, PICT, PYM, CHECK_KC, TMI, PP_KID, COL_GROUP, DYEAR, JJ, VIPF) VALUES (" +
                q(id) + "," + q(brand.id) + "," + q(sizeGroups()[cls.group].id) + "," + q(cls.id) + "," + q(name) + "," +
                q(cls.unit) + ",0,0," + num(style.cost) + "," + num(style.cost) + "," + num(style.tag) + "," + q(brand.name) +
                "," + q(random_.pick(suppliers_)) + "," + q(random_.chance(50) ? "100%棉" : "65%涤纶 35%棉") + ",0,'admin'," +
                q(stamp(start_, 9, 0)) + "," + q(stamp(start_, 9, 0)) + ",1,'','',''," + std::to_string(style.checkStock) +
                "," + std::to_string(style.tmi) + ",'',''," + q("20" + year) + "," + q(seasons[n % 4]) + ",0)");
            const int styleIndex = static_cast<int>(styles_.size());
            styles_.push_back(style);
            for (int c : style.colours) {
                const std::string wl = id + kColours[c].id;
                add("INSERT INTO D1801 VALUES (" + q(wl) + "," + q(id) + "," + q(kColours[c].id) + ")");
                add("INSERT INTO D1804 VALUES (" + q(id) + "," + q(kColours[c].id) + ")");
                skus_.push_back({wl, styleIndex, c});
                if (style.tmi == 1) freeBarcodes(style, wl);
            }
        }
    }

    // Rule 1 styles carry barcodes typed by hand (EAN-13 style numbers here).
    void freeBarcodes(const Style& style, const std::string& wl) {
        const auto& group = sizeGroups()[style.cls->group];
        for (std::size_t i = 0; i < group.names.size(); ++i)
            add("INSERT INTO D1809 (WL_ID, M_INDEX, K_ID, TM) VALUES (" + q(wl) + "," + q(std::to_string(i)) + "," +
                q(style.id) + ",'69" + pad(++barcodeSerial_, 11) + "')");
    }

    // Opening stock of a third of the SKUs in the head warehouse, written as system
    // initialisation does (a maintenance batch: stock rows written directly).
    void openingStock() {
        flush();
        for (std::size_t s = 0; s < skus_.size(); s += 3) {
            const Style& style = styles_[skus_[s].style];
            Sizes b = curve(style, 2);
            const std::string opening = stamp(start_ - std::chrono::days(1), 0, 0);
            std::string sizes;
            for (int i = 0; i < 10; ++i) sizes += "," + std::to_string(b[i]);
            add("INSERT INTO D1802 (WL_ID, CK_ID, BDATE, B0, B1, B2, B3, B4, B5, B6, B7, B8, B9, BEGIN_SL, BEGIN_DJ, "
                "BEGIN_MONEY, CHECK_KC) VALUES (" + q(skus_[s].id) + ",'ZC'," + q(opening) + sizes + "," +
                std::to_string(total(b)) + "," + num(style.cost) + "," + num(style.cost * total(b)) + "," +
                std::to_string(style.checkStock) + ")");
            stock(static_cast<int>(s), kHead) = b;
        }
        add("UPDATE D1802 SET K0=B0, K1=B1, K2=B2, K3=B3, K4=B4, K5=B5, K6=B6, K7=B7, K8=B8, K9=B9");
        flush(true);
    }

    // ---- documents ----

    struct Line {
        int sku;
        Sizes qty;
    };

    // SKUs with stock in a warehouse, drawn at random; quantities limited by that stock.
    std::vector<Line> pickFromStock(int warehouse, int lines, int perSize) {
        std::vector<Line> out;
        for (int attempt = 0; attempt < lines * 6 && static_cast<int>(out.size()) < lines; ++attempt) {
            const int sku = random_.between(0, static_cast<int>(skus_.size()) - 1);
            if (std::any_of(out.begin(), out.end(), [&](const Line& l) { return l.sku == sku; })) continue;
            auto it = stock_.find({sku, warehouse});
            if (it == stock_.end() || total(it->second) <= 0) continue;
            Sizes qty{};
            for (int i = 0; i < 10; ++i)
                qty[i] = std::min(std::max(0, it->second[i]), random_.between(0, perSize));
            if (total(qty) > 0) out.push_back({sku, qty});
        }
        return out;
    }

    void move(int warehouse, const Line& line, int sign) {
        Sizes& s = stock(line.sku, warehouse);
        for (int i = 0; i < 10; ++i) s[i] += sign * line.qty[i];
    }

    std::string lineKey(const Line& line) const {
        const Sku& sku = skus_[line.sku];
        return q(sku.id) + "," + q(styles_[sku.style].id) + "," + q(kColours[sku.colour].id);
    }

    void businessDay(Day day) {
        const int dayIndex = static_cast<int>((day - start_).count());
        arrivals(day);
        for (int k = 0; k < scale_; ++k) {
            if (dayIndex % 3 == 0) purchaseReceipt(day);
            if (dayIndex % 2 == 0) transfer(day, kHead, 1 + (dayIndex / 2 + k) % kShops);
            if (dayIndex % 5 == 1) salesTicket(day);
            if (dayIndex % 14 == 3) order(day, 1 + k % kShops);
            for (int shop = 1; shop <= kShops; ++shop) pointOfSale(day, shop);
        }
        if (dayIndex % 30 == 10) purchaseReturn(day);
        if (dayIndex % 30 == 20) salesReturn(day);
        if (dayIndex % 45 == 30) transfer(day, 1 + (dayIndex / 45) % kShops, kHead);  // a shop sends slow sellers back
        if (dayIndex % 91 == 60)
            for (int shop = 1; shop <= kShops; ++shop) lossGain(day, shop, "季度盘点差异");
        if (day == end_ - std::chrono::days(40)) closedStocktake(day, 1);
        if (pending_ > 0 && dayIndex % 7 == 6) flush();
    }

    void purchaseReceipt(Day day) {
        const std::string noid = number("201", day);
        const std::string supplier = random_.pick(suppliers_);
        const bool approved = day < end_ - std::chrono::days(3) || random_.chance(50);
        std::vector<Line> lines;
        const int count = random_.between(3, 8);
        for (int i = 0; i < count; ++i) {
            const int sku = random_.between(0, static_cast<int>(skus_.size()) - 1);
            if (std::any_of(lines.begin(), lines.end(), [&](const Line& l) { return l.sku == sku; })) continue;
            lines.push_back({sku, curve(styles_[skus_[sku].style], random_.between(2, 4))});
        }
        double money = 0;
        for (const auto& l : lines) money += total(l.qty) * styles_[skus_[l.sku].style].cost;
        // Most receipts are entered approved; some are approved afterwards (the head's T changes).
        const bool approveLater = approved && random_.chance(15);
        add("INSERT INTO D8101(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,send_no,YW_ID,JY_ID, USER_ID, NOTE,TOLMONEY) VALUES (" +
            q(approved && !approveLater ? "1" : "0") + "," + q(noid) + "," + q(supplier) + ",'ZC'," + q(dayText(day)) +
            ",'01'," + q("SH" + noid.substr(3)) + "," + q(salespeople_[random_.between(0, 1)]) + "," + q(random_.chance(70) ? "2" : "1") +
            ",'cg01',''," + q(num(money)) + ")");
        for (const auto& l : lines) {
            const double cost = styles_[skus_[l.sku].style].cost;
            add("INSERT INTO D8101A  VALUES (" + q(noid) + "," + lineKey(l) + ",'ZC'," + sizeList(l.qty) + "," +
                q(num(cost)) + "," + q(num(cost * total(l.qty))) + ",'')");
            if (approved) move(kHead, l, +1);
        }
        add(" INSERT INTO D1802 (WL_ID, CK_ID,CHECK_KC) SELECT D8101A.WL_ID, D8101.CK_ID, D1800.CHECK_KC FROM D8101A INNER JOIN "
            "D8101 ON D8101A.NOID = D8101.NOID INNER JOIN D1800 ON D8101A.K_ID = D1800.K_ID LEFT OUTER JOIN D1802 ON "
            "D8101A.WL_ID = D1802.WL_ID AND D8101.CK_ID = D1802.CK_ID WHERE (D8101A.NOID =" + q(noid) + ") AND (D1802.WL_ID IS NULL)");
        add("insert into d1809 (WL_ID, M_INDEX, K_ID, TM) SELECT V1809.WL_ID, V1809.mindex, V1809.K_ID, V1809.tm FROM V1809 "
            "LEFT OUTER JOIN D1809 ON V1809.WL_ID = D1809.WL_ID AND V1809.mindex = D1809.M_INDEX WHERE (V1809.NOID =" + q(noid) +
            ") AND (D1809.WL_ID IS NULL)");
        if (approveLater) add("UPDATE D8101 SET T=1, SK='admin', SDATE=" + q(stamp(day, 17, 30)) + " WHERE NOID=" + q(noid));
        countDocument(lines.size());
    }

    void purchaseReturn(Day day) {
        auto lines = pickFromStock(kHead, random_.between(1, 3), 1);
        if (lines.empty()) return;
        const std::string noid = number("202", day);
        double money = 0;
        for (const auto& l : lines) money += total(l.qty) * styles_[skus_[l.sku].style].cost;
        add("INSERT INTO D8102(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,YW_ID,JY_ID, USER_ID, NOTE,TOLMONEY) VALUES ('1'," + q(noid) +
            "," + q(random_.pick(suppliers_)) + ",'ZC'," + q(dayText(day)) + ",'01','Y01','2','cg01','质量问题退货'," + q(num(money)) + ")");
        for (const auto& l : lines) {
            const double cost = styles_[skus_[l.sku].style].cost;
            add("INSERT INTO D8102A  VALUES (" + q(noid) + "," + lineKey(l) + ",'ZC'," + sizeList(l.qty) + ",0,0," + q(num(cost)) +
                "," + q(num(cost * total(l.qty))) + ",'')");
            move(kHead, l, -1);
        }
        add("UPDATE D8102A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M WHERE (D8102A.K_ID=M.K_ID) AND (D8102A.NOID=" +
            q(noid) + ")");
        countDocument(lines.size());
    }

    void salesTicket(Day day) {
        auto lines = pickFromStock(kHead, random_.between(3, 6), 2);
        if (lines.empty()) return;
        const std::string noid = number("211", day);
        const int discount = random_.between(55, 70);
        double money = 0;
        for (const auto& l : lines) money += total(l.qty) * styles_[skus_[l.sku].style].tag * discount / 100.0;
        add("INSERT INTO D8201(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,YW_ID,JY_ID, USER_ID, NOTE,TOLMONEY) VALUES ('1'," + q(noid) +
            "," + q(random_.pick(customers_)) + ",'ZC'," + q(dayText(day)) + ",'03'," + q(salespeople_[random_.between(2, 3)]) +
            "," + q(random_.chance(60) ? "2" : "3") + ",'admin',''," + q(num(money)) + ")");
        for (const auto& l : lines) {
            const Style& style = styles_[skus_[l.sku].style];
            const double price = style.tag * discount / 100.0;
            add("INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, SJ, SMONEY, ZK, ODJ, "
                "OMONEY, NOTE, DJ, MONEY) VALUES (" + q(noid) + "," + lineKey(l) + ",'ZC'," + sizeList(l.qty) + "," + q(num(price)) +
                "," + q(num(price * total(l.qty))) + "," + q(std::to_string(discount)) + "," + q(num(style.tag)) + "," +
                q(num(style.tag * total(l.qty))) + ",''," + q(num(style.cost)) + "," + q(num(style.cost * total(l.qty))) + ")");
            move(kHead, l, -1);
            sold_.push_back(l.sku);
        }
        countDocument(lines.size());
    }

    void salesReturn(Day day) {
        if (sold_.empty()) return;
        const std::string noid = number("212", day);
        const int sku = sold_[random_.next() % sold_.size()];
        const Style& style = styles_[skus_[sku].style];
        Sizes qty{};
        qty[static_cast<std::size_t>(random_.between(0, static_cast<int>(sizeGroups()[style.cls->group].names.size()) - 1))] = 1;
        const Line line{sku, qty};
        const double price = style.tag * 0.6;
        add("INSERT INTO D8202(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,YW_ID,JY_ID, USER_ID, NOTE,TOLMONEY) VALUES ('1'," + q(noid) + "," +
            q(random_.pick(customers_)) + ",'ZC'," + q(dayText(day)) + ",'03','Y03','2','admin','尺码不合退货'," + q(num(price)) + ")");
        add("INSERT INTO D8202A  VALUES (" + q(noid) + "," + lineKey(line) + ",'ZC'," + sizeList(qty) + "," + q(num(style.cost)) + "," +
            q(num(style.cost)) + "," + q(num(price)) + "," + q(num(price)) + ",'')");
        move(kHead, line, +1);
        countDocument(1);
    }

    void order(Day day, int shop) {
        const std::string noid = number("215", day);
        add("INSERT INTO D8203(NOID,CK_ID, BDATE,  USER_ID, NOTE) VALUES (" + q(noid) + "," + q(kWarehouses[shop].id) + "," +
            q(dayText(day)) + ",'admin','门店补货订单')");
        const int count = random_.between(2, 5);
        for (int i = 0; i < count; ++i) {
            const int sku = random_.between(0, static_cast<int>(skus_.size()) - 1);
            const Style& style = styles_[skus_[sku].style];
            const Line line{sku, curve(style, 1)};
            add("INSERT INTO D8203A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, DJ, MONEY, NOTE) VALUES (" +
                q(noid) + "," + lineKey(line) + "," + q(kWarehouses[shop].id) + "," + sizeList(line.qty) + "," + q(num(style.cost)) +
                "," + q(num(style.cost * total(line.qty))) + ",'')");
        }
        countDocument(static_cast<std::size_t>(count));
    }

    struct InTransit {
        std::string noid;
        int to;
        std::vector<Line> lines;
        Day arrives;
    };

    void transfer(Day day, int from, int to) {
        auto lines = pickFromStock(from, random_.between(3, 6), from == kHead ? 3 : 1);
        if (lines.empty()) return;
        const std::string noid = number("217", day);
        const std::string out = kWarehouses[from].id, in = kWarehouses[to].id;
        add("INSERT INTO D8303(NOID,T,CK_ID,CK_ID_IN,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES (" + q(noid) + ",'1'," + q(out) + "," + q(in) +
            "," + q(dayText(day)) + ",'王建国','admin','')");
        for (const auto& l : lines) {
            const Style& style = styles_[skus_[l.sku].style];
            add("INSERT INTO D8303A  VALUES (" + q(noid) + "," + lineKey(l) + "," + q(out) + "," + q(in) + "," + sizeList(l.qty) +
                ",0,0," + q(num(style.tag)) + "," + q(num(style.tag * total(l.qty))) + ",'',0,0,0,0,0,0,0,0,0,0)");
            move(from, l, -1);
        }
        add("UPDATE D8303A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M WHERE (D8303A.K_ID=M.K_ID) AND (D8303A.NOID=" +
            q(noid) + ")");
        // The last few transfers are still on their way when the year ends.
        const Day arrives = day > end_ - std::chrono::days(5) ? end_ + std::chrono::days(1) : day + std::chrono::days(random_.between(1, 2));
        transit_.push_back({noid, to, lines, arrives});
        countDocument(lines.size());
    }

    // Transfers arrive a day or two after they left; the receiving shop counts them (now and
    // then one piece short) and confirms.
    void arrivals(Day day) {
        for (auto it = transit_.begin(); it != transit_.end();) {
            if (it->arrives > day) {
                ++it;
                continue;
            }
            int shortBy = 0;
            std::vector<std::string> lineUpdates;
            for (auto& l : it->lines) {
                Sizes counted = l.qty;
                if (random_.chance(5)) {
                    for (auto& v : counted)
                        if (v > 0) {
                            --v;
                            ++shortBy;
                            break;
                        }
                }
                std::string set;
                for (int i = 0; i < 10; ++i) set += (i ? " ," : " ") + std::string("y") + std::to_string(i) + "=" + std::to_string(counted[i]);
                lineUpdates.push_back("update D8303A  set " + set + " where (noid=" + q(it->noid) + ") and (wl_id=" + q(skus_[l.sku].id) + ")");
                move(it->to, {l.sku, counted}, +1);
            }
            add("UPDATE D8303 SET y=1,YDATE=" + q(stamp(day, 16, 0)) + ",YNAME=" + q(kWarehouses[it->to].manager) + ",y_note=" +
                q(shortBy ? "到货短少" : "") + ",y_wc=" + q(std::to_string(shortBy)) + " WHERE NOID=" + q(it->noid));
            for (auto& u : lineUpdates) add(std::move(u));
            it = transit_.erase(it);
        }
    }

    void pointOfSale(Day day, int shop) {
        const int tickets = random_.between(1, 4);
        for (int t = 0; t < tickets; ++t) {
            auto lines = pickFromStock(shop, random_.between(1, 3), 1);
            for (auto& l : lines) {  // one piece per line
                bool taken = false;
                for (auto& v : l.qty) {
                    if (v > 0 && !taken) {
                        v = 1;
                        taken = true;
                    } else {
                        v = 0;
                    }
                }
            }
            const bool refund = !posSold_[shop].empty() && random_.chance(3);
            if (lines.empty() && !refund) continue;
            if (refund) {
                const Line sold = posSold_[shop][random_.next() % posSold_[shop].size()];
                Sizes back{};
                for (int i = 0; i < 10; ++i) back[i] = -sold.qty[i];
                lines.push_back({sold.sku, back});
            }
            const std::string noid = number("712", day);
            const bool member = random_.chance(35);
            const int vipDiscount = member ? 95 : 100;
            add("INSERT INTO D712 (NOID, BDATE, CK_ID, VIPID, VIPZK, YW_ID) VALUES (" + q(noid) + "," +
                q(stamp(day, 10 + t * 2 + random_.between(0, 1), random_.between(0, 59))) + "," + q(kWarehouses[shop].id) + "," +
                (member ? q(random_.pick(members_)) : std::string("''")) + "," + std::to_string(vipDiscount) + "," +
                q(salespeople_[random_.between(4, 5)]) + ")");
            for (const auto& l : lines) {
                const Style& style = styles_[skus_[l.sku].style];
                const int pieces = total(l.qty);
                const double price = style.tag * vipDiscount / 100.0;
                std::string sizes;
                for (int i = 0; i < 10; ++i) sizes += "," + std::to_string(l.qty[i]);
                add("INSERT INTO D712A (NOID, WL_ID, S0, S1, S2, S3, S4, S5, S6, S7, S8, S9, SJ, SMONEY, ZK, ODJ, OMONEY, MONEY, NOTE) VALUES (" +
                    q(noid) + "," + q(skus_[l.sku].id) + sizes + "," + num(price) + "," + num(price * pieces) + "," +
                    std::to_string(vipDiscount) + "," + num(style.tag) + "," + num(style.tag * pieces) + "," + num(price * pieces) + ",'')");
                move(shop, l, -1);
                if (pieces > 0) posSold_[shop].push_back(l);
            }
            countDocument(lines.size());
        }
    }

    // A loss/gain sheet: a few SKUs one piece over or under.
    std::string lossGain(Day day, int shop, const std::string& note) {
        auto lines = pickFromStock(shop, 3, 1);
        if (lines.empty()) return {};
        const std::string noid = number("218", day);
        add("INSERT INTO d8301(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES (" + q(noid) + ",'1'," + q(kWarehouses[shop].id) + "," +
            q(dayText(day)) + "," + q(kWarehouses[shop].manager) + ",'admin'," + q(note) + ")");
        for (auto& l : lines) {
            bool first = true;
            for (auto& v : l.qty) {
                if (v > 0 && first) {
                    v = random_.chance(60) ? -1 : 1;
                    first = false;
                } else {
                    v = 0;
                }
            }
            const Style& style = styles_[skus_[l.sku].style];
            add("INSERT INTO d8301A  VALUES (" + q(noid) + "," + lineKey(l) + "," + q(kWarehouses[shop].id) + "," + sizeList(l.qty) + "," +
                q(num(style.cost)) + "," + q(num(style.cost * total(l.qty))) + ",'')");
            move(shop, l, +1);
        }
        countDocument(lines.size());
        return noid;
    }

    // A stocktake counted, summarised into a loss/gain sheet.
    void closedStocktake(Day day, int shop) {
        const std::string sheet = lossGain(day, shop, "盘点汇总生成");
        const std::string noid = number("235", day);
        add("INSERT INTO d8300(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES (" + q(noid) + ",'1'," + q(kWarehouses[shop].id) + "," +
            q(dayText(day)) + "," + q(kWarehouses[shop].manager) + ",'admin','季度盘点')");
        if (!sheet.empty()) add("UPDATE d8300 SET D8301NOID=" + q(sheet) + " WHERE NOID=" + q(noid));
        stocktakeLines(noid, shop, 0);
    }

    // The stocktake still being counted at the end of the year.
    void openStocktake() {
        const std::string noid = number("235", end_);
        add("INSERT INTO d8300(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES (" + q(noid) + ",'0','MD02'," + q(dayText(end_)) +
            ",'张敏','admin','年终盘点')");
        stocktakeLines(noid, 2, 10);
    }

    void stocktakeLines(const std::string& noid, int shop, int variancePercent) {
        int lines = 0;
        for (const auto& [key, sizes] : stock_) {
            if (key.second != shop || total(sizes) <= 0 || lines >= 30 * scale_) continue;
            Sizes counted{};
            for (int i = 0; i < 10; ++i) counted[i] = std::max(0, sizes[i] - (random_.chance(variancePercent) ? 1 : 0));
            const Line line{key.first, counted};
            const Style& style = styles_[skus_[key.first].style];
            add("INSERT INTO d8300A  VALUES (" + q(noid) + "," + lineKey(line) + "," + q(kWarehouses[shop].id) + "," + sizeList(counted) +
                "," + q(num(style.cost)) + "," + q(num(style.cost * total(counted))) + ",'')");
            ++lines;
        }
        countDocument(static_cast<std::size_t>(lines));
    }

    void countDocument(std::size_t lines) {
        ++summary_.documents;
        summary_.lines += static_cast<int>(lines);
    }

    // ---- settings ----

    void settings() {
        const std::chrono::year_month_day endYmd(end_);
        const auto closedBefore = std::chrono::year_month_day(endYmd.year() / endYmd.month() / 1) - std::chrono::months(1);
        const std::string openFrom = dayText(Day(closedBefore));
        const std::string param = "1,0,6,1,1,1,1,0,0,1,1234,0,1,1,1,1,6,1,1,1,1,100,1,1,1,1,1,1,1,6,0,1,1,1,1,1,1,1";
        add("INSERT INTO sys_co (CO, FZR, TEL, FAX, ADDR, EMAIL, NOTE, BACKPATH, BACKDAY, PARAM, PriceLen, AmountLen, QtyLen, ck_date, "
            "ck_qs, CK_MENOY, CK_END_DATE) VALUES ('上海雅格服饰有限公司','王建国','021-64881234','021-64881235',"
            "'上海市闵行区虹梅南路 1888 号','service@yage.example','演示数据','backup',7," + q(param) + ",2,2,0,31,1,4," + q(openFrom) + ")");
        webColumns();
        promotions();
        supervisionCodes();
        for (const auto& [key, seq] : counters_)
            add("INSERT INTO sys_noid (FUNC_NO, PERIOD, SEQ) VALUES (" + q(key.substr(0, 3)) + "," + q(key.substr(3)) + "," +
                std::to_string(seq) + ")");
        // Styles carry their total stock and value, as the period routines keep them.
        add("UPDATE D1800 SET KC=T.K FROM (SELECT D1801.K_ID, SUM(D1802.KC) AS K FROM D1802 INNER JOIN D1801 ON D1802.WL_ID = D1801.WL_ID "
            "GROUP BY D1801.K_ID) T WHERE D1800.K_ID=T.K_ID");
        add("UPDATE D1800 SET MONEY=KC*CGJ");
    }

    void webColumns() {
        struct Column {
            const char* table;
            const char* name;
            int width;
        };
        const std::vector<Column> columns = {
            {"CG", "单号", 90},  {"CG", "日期", 80},  {"CG", "款号", 90},  {"CG", "数量", 50}, {"CG", "金额", 70},
            {"kc", "仓库", 70},  {"kc", "款号", 90},  {"kc", "颜色", 50},  {"kc", "库存", 50},
            {"vip", "会员号", 80}, {"vip", "姓名", 60}, {"vip", "电话", 90}, {"vip", "积分", 50},
            {"ss", "单号", 90},  {"ss", "日期", 80},  {"ss", "款号", 90},  {"ss", "数量", 50}, {"ss", "金额", 70},
            {"xsg", "门店", 80}, {"xsg", "数量", 50}, {"xsg", "金额", 70}};
        int id = 0, order = 0;
        std::string last;
        for (const auto& c : columns) {
            order = last == c.table ? order + 1 : 1;
            last = c.table;
            add("INSERT INTO sys_web (id, field_table, field_name, field_width, field_show, field_type, field_order) VALUES (" +
                std::to_string(++id) + "," + q(c.table) + "," + q(c.name) + "," + std::to_string(c.width) + ",1,'c'," + std::to_string(order) + ")");
        }
        const std::vector<const char*> texts = {"雅格服饰移动查询", "采购明细", "库存查询", "会员查询", "销售明细",
                                                "销售汇总", "今日销售", "本月销售", "门店排行", "退出"};
        for (std::size_t i = 0; i < texts.size(); ++i)
            add("INSERT INTO sys_web (id, field_table, field_name, field_width, field_show, field_type, field_order) VALUES (" +
                std::to_string(++id) + ",'cg'," + q(texts[i]) + ",0," + std::to_string(i + 1) + ",'m'," + std::to_string(i + 1) + ")");
    }

    void promotions() {
        add("INSERT INTO D704 VALUES ('MD01','1','1','春季新品九折','0','90','0','0','0'," + q(dayText(end_ - std::chrono::days(60))) +
            "," + q(dayText(end_ + std::chrono::days(30))) + ")");
        add("INSERT INTO D704 VALUES ('MD02','2','1','会员日特价','0','100','0','0','0','1990-01-01','2050-01-01')");
        for (int i = 0; i < 5; ++i) {
            const Style& style = styles_[static_cast<std::size_t>(i * 7) % styles_.size()];
            add("INSERT INTO D704A (I, K_ID,CK_ID, DJ,DJ_VIP) VALUES(2," + q(style.id) + ",'MD02'," + num(style.tag * 0.8) + "," +
                num(style.tag * 0.75) + ")");
        }
    }

    void supervisionCodes() {
        for (int i = 1; i <= 20 * scale_; ++i) {
            const Style& style = styles_[random_.next() % styles_.size()];
            const bool sent = i % 3 != 0;
            add("INSERT INTO D1805 (JGM, K_ID, CK_ID, DATE1, DATE2, DATE3, VIPID) VALUES (" + q("JG" + pad(i, 10)) + "," + q(style.id) +
                "," + (sent ? q(kWarehouses[1 + i % kShops].id) : std::string("NULL")) + "," + q(stamp(end_ - std::chrono::days(90), 9, 0)) +
                "," + (sent ? q(stamp(end_ - std::chrono::days(60), 9, 0)) : std::string("NULL")) + ",NULL,NULL)");
        }
    }

    db::Database& db_;
    Options options_;
    Random random_;
    int scale_;
    Day start_, end_;
    std::string batch_;
    int pending_ = 0;
    Summary summary_;
    std::vector<Style> styles_;
    std::vector<Sku> skus_;
    std::vector<std::string> suppliers_, customers_, members_, salespeople_;
    std::map<std::pair<int, int>, Sizes> stock_;
    std::map<std::string, long long> counters_;
    std::vector<InTransit> transit_;
    std::vector<int> sold_;
    std::map<int, std::vector<Line>> posSold_;
    int barcodeSerial_ = 0;
};

}  // namespace

std::string passwordHash(const std::string& salt, const std::string& password) {
    const std::string input = salt + password;
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (EVP_Digest(input.data(), input.size(), digest, &length, EVP_sha256(), nullptr) != 1)
        throw db::Error("SHA-256 is not available");
    std::string hex;
    char part[3];
    for (unsigned int i = 0; i < length; ++i) {
        std::snprintf(part, sizeof part, "%02x", digest[i]);
        hex += part;
    }
    return hex;
}

Summary generate(db::Database& database, const Options& options) { return Generator(database, options).run(); }

Summary createDemoDatabase(const std::string& path, const Options& options) {
    if (db::isServerLocation(path)) {
        // A database on a server, created empty by its administrator: the shop goes into it.
        db::PostgresDatabase database(path);
        if (database.hasShop()) throw db::Error("demo: " + path + " already holds a shop");
        database.createShop();
        return generate(database, options);
    }
    if (std::filesystem::exists(path)) throw db::Error("demo: " + path + " already exists");
    auto database = db::openSqlite(path, true);
    return generate(*database, options);
}

}  // namespace qx::demo
