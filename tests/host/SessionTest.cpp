// Signing in: the salted password check and the globals set from the shop database.
#include <gtest/gtest.h>

#include "db/tools/DemoData.h"
#include "framework/U_glo.h"
#include "host/Session.h"
#include "host/ShopFixture.h"

namespace {

using qx::host::checkLogin;
using qx::host::passwordHash;
using qx::host::signIn;
using qx::test::ShopFixture;

class SessionTest : public ::testing::Test {
protected:
    void SetUp() override { ResetGlobals(); }
    void TearDown() override { ResetGlobals(); }
};

TEST_F(SessionTest, PasswordHashIsHexSha256OfSaltAndPassword) {
    EXPECT_EQ(passwordHash("s4lt", "admin"),
              "0e1e961a7742909d623d963384d7503ee9a53748231970c7e6d674ae8ea4065a");
    EXPECT_EQ(passwordHash("盐", "密码"),
              "072a78622424c60e6f38fc9433c012defebf06e170cb27f0a829448390f81f1d");
}

TEST_F(SessionTest, PasswordHashAgreesWithTheDemoGenerator) {
    EXPECT_EQ(passwordHash("abc", "admin").toStdString(), qx::demo::passwordHash("abc", "admin"));
}

TEST_F(SessionTest, RightPasswordSignsIn) {
    ShopFixture shop;
    EXPECT_EQ(checkLogin(*shop.db, "admin", "admin"), std::nullopt);
    EXPECT_EQ(checkLogin(*shop.db, "clerk", "secret"), std::nullopt);
}

TEST_F(SessionTest, WrongPasswordOrUnknownUserIsRefusedWithOneMessage) {
    ShopFixture shop;
    EXPECT_EQ(checkLogin(*shop.db, "admin", "Admin"), QString("用户名或密码错误!"));
    EXPECT_EQ(checkLogin(*shop.db, "admin", ""), QString("用户名或密码错误!"));
    EXPECT_EQ(checkLogin(*shop.db, "clerk", "admin"), QString("用户名或密码错误!"));
    EXPECT_EQ(checkLogin(*shop.db, "nobody", "admin"), QString("用户名或密码错误!"));
    EXPECT_EQ(checkLogin(*shop.db, "x' OR '1'='1", "admin"), QString("用户名或密码错误!"));
}

TEST_F(SessionTest, UserWithoutPasswordHashCannotSignIn) {
    ShopFixture shop;
    shop.exec("INSERT INTO sys_user (USER_ID, USER_NAME) VALUES ('ghost', '无密码')");
    EXPECT_EQ(checkLogin(*shop.db, "ghost", ""), QString("用户名或密码错误!"));
}

TEST_F(SessionTest, GlobalsWithoutWarehouseRights) {
    ShopFixture shop(3, "1,1,6,0");  // position 3 = 0: rights not enforced
    signIn(*shop.db, "admin");
    EXPECT_EQ(G_UserId, "admin");
    EXPECT_EQ(G_UserName, "系统管理员");
    EXPECT_EQ(G_CoName, "测试服饰");
    EXPECT_EQ(G_CHKCK, 0);
    EXPECT_EQ(G_CKCOUNT_C, 0);
    EXPECT_EQ(G_CKCOUNT_R, 0);
    EXPECT_EQ(G_CKCOUNT_W, 0);
    EXPECT_EQ(G_ckid, "01");
    EXPECT_EQ(G_CkName, "仓库1");
    EXPECT_EQ(G_CM, 6) << "the trousers group names sizes up to position 6";
    EXPECT_EQ(G_SK, 0);
    EXPECT_EQ(G_SKSTR, "1");
    EXPECT_EQ(GKH4_2, 1) << "a short option list reads as all ticked, the free barcode rule too";
    EXPECT_EQ(G_record.UserId, "admin");
    EXPECT_EQ(G_record.CkId, "01");
    EXPECT_EQ(G_record.CoName, "测试服饰");
}

TEST_F(SessionTest, OneWarehouseBlocksTransfersAndDistribution) {
    ShopFixture shop(1, "1,1,6,0");
    signIn(*shop.db, "admin");
    EXPECT_EQ(G_CKCOUNT_C, 1);
    EXPECT_EQ(G_CKCOUNT_R, 1);
    EXPECT_EQ(G_CKCOUNT_W, 1);
}

TEST_F(SessionTest, EnforcedRightsCountTheUsersWarehouses) {
    ShopFixture shop(3, "");       // an empty option list reads as all ticked: rights enforced
    shop.grant("clerk", "02", 0);  // read only
    shop.grant("clerk", "03", 1);
    signIn(*shop.db, "clerk");
    EXPECT_EQ(G_CHKCK, 1);
    EXPECT_EQ(G_CKCOUNT_C, 0);
    EXPECT_EQ(G_CKCOUNT_R, 0) << "reads two warehouses";
    EXPECT_EQ(G_CKCOUNT_W, 1) << "writes one";
    EXPECT_EQ(G_ckid, "03") << "the default warehouse is the first writable one";
    EXPECT_EQ(G_CkName, "仓库3");
}

TEST_F(SessionTest, EnforcedRightsWithOneReadableWarehouseBlockDistribution) {
    ShopFixture shop(3, "1,1,6,1");
    shop.grant("clerk", "01", 1);
    signIn(*shop.db, "clerk");
    EXPECT_EQ(G_CKCOUNT_C, 0);
    EXPECT_EQ(G_CKCOUNT_R, 1);
    EXPECT_EQ(G_CKCOUNT_W, 1);
    EXPECT_EQ(G_ckid, "01");
}

TEST_F(SessionTest, FreeBarcodeRuleKeepsBarcodesPerSize) {
    QStringList param;
    for (int i = 0; i < 38; ++i) param << "1";
    param[3] = "0";
    param[34] = "0";
    ShopFixture off(2, param.join(','));
    signIn(*off.db, "admin");
    EXPECT_EQ(GKH4_2, 0);
    param[34] = "1";
    ShopFixture on(2, param.join(','));
    signIn(*on.db, "admin");
    EXPECT_EQ(GKH4_2, 1);
}

TEST_F(SessionTest, ApprovalModeMakesNewDocumentsWait) {
    ShopFixture shop;
    signIn(*shop.db, "admin", {.approval = true});
    EXPECT_EQ(G_SK, 1);
    EXPECT_EQ(G_SKSTR, "0");
}

TEST_F(SessionTest, RecordForAMenuPickCarriesTheCodeAndUserContext) {
    ShopFixture shop(3, "1,1,6,0");
    signIn(*shop.db, "admin");
    const Trecord rec = qx::host::recordFor(201, "shop.db");
    EXPECT_EQ(rec.FuncCode, 201);
    EXPECT_EQ(rec.UserId, "admin");
    EXPECT_EQ(rec.UserName, "系统管理员");
    EXPECT_EQ(rec.CkId, "01");
    EXPECT_EQ(rec.CkName, "仓库1");
    EXPECT_EQ(rec.CoName, "测试服饰");
    EXPECT_EQ(rec.DbName, "shop.db");
}

}  // namespace
