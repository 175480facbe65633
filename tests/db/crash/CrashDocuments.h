#pragma once
// The documents the crash test saves: receipt i has 1 + i % 4 lines, its head's NOTE says how
// many, so a reader can tell a whole document from a part of one.
#include <cstdio>
#include <string>

namespace qx::crash {

inline std::string documentNumber(long long i) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "C%08lld", i);
    return buffer;
}

inline int lineCount(long long i) { return 1 + static_cast<int>(i % 4); }

inline std::string lines(long long i, int round) {
    static const char* const skus[][3] = {{"K001", "K0", "01"}, {"K102", "K1", "02"}, {"K201", "K2", "01"}, {"K302", "K3", "02"}};
    const std::string noid = documentNumber(i);
    std::string batch;
    for (int k = 0; k < lineCount(i); ++k) {
        const auto& sku = skus[(i + k) % 4];
        std::string sizes;
        for (int s = 0; s < 10; ++s) sizes += (s ? ",'" : "'") + std::to_string((i + k + s + round) % 3) + "'";
        batch += "INSERT INTO D8101A  VALUES ('" + noid + "','" + sku[0] + "','" + sku[1] + "','" + sku[2] + "','ZC'," + sizes + ",'10','100','');";
    }
    return batch;
}

// A new receipt, effective at once.
inline std::string saveBatch(long long i) {
    const std::string noid = documentNumber(i);
    return "INSERT INTO D8101(T,NOID,KH_GYS_ID,CK_ID, BDATE, USER_ID, NOTE) VALUES ('1','" + noid + "','G1','ZC','2026-05-10 10:00:00','admin','lines=" +
           std::to_string(lineCount(i)) + "');" + lines(i, 0);
}

// An edit of receipt i: taken back, its lines written again with other quantities, effective again.
inline std::string editBatch(long long i) {
    const std::string noid = documentNumber(i);
    return "UPDATE D8101 SET T=0 WHERE NOID='" + noid + "';delete from D8101A WHERE NOID='" + noid + "';" + lines(i, 1) +
           "UPDATE D8101 SET T=1,EDATE=GETDATE() WHERE NOID='" + noid + "';";
}

}  // namespace qx::crash
