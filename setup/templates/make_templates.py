#!/usr/bin/python3
"""Writes the blank import templates, the sample goods sheet (xlsx, xls, csv) and the test
sheets. Run from the repository root: /usr/bin/python3 setup/templates/make_templates.py
Needs python3-xlsxwriter and python3-xlwt (Debian)."""
import csv
import os

import xlsxwriter
import xlwt

HERE = os.path.dirname(os.path.abspath(__file__))
TESTS = os.path.join(HERE, "..", "..", "tests", "setup", "sheets")

# Column titles in sheet order (the module checks them against its own list in a test).
GOODS = ["仓库", "款号", "品名", "拼音码", "品牌", "单位", "类别", "年份", "季节", "色号", "颜色", "尺码组",
         "尺码1", "尺码2", "尺码3", "尺码4", "尺码5", "尺码6", "尺码7", "尺码8", "尺码9", "尺码10",
         "成本单价", "进价", "吊牌价", "材料", "条码规则", "不积分", "不允许负库存"]
PARTNER = ["编号", "简称", "拼音码", "全称", "负责人", "电话", "电话2", "传真", "等级", "地区", "送货方式",
           "开始日期", "结束日期", "地址", "E-mail", "网址", "备注", "期初金额"]
MEMBER = ["会员卡号", "姓名", "拼音码", "电话", "传真", "地址", "E-mail", "证件号", "入会日期", "到期日期", "生日",
          "等级", "折扣", "积分", "已兑积分", "消费金额", "备注", "状态"]


def goods_row(store, style, name, brand, cls, colour, sizes, cost, buy, tag, rule="", colour_id="", check=""):
    q = list(sizes) + [0] * (10 - len(sizes))
    return [store, style, name, "", brand, "件", cls, "2026", "春", colour_id, colour, "服装"] + q + \
        [cost, buy, tag, "棉", rule, "", check]


SAMPLE = [
    goods_row("总仓", "S2601", "圆领T恤", "朴素", "上衣", "白色", [5, 10, 10, 5], 35, 40, 99, "5", "01"),
    goods_row("总仓", "S2601", "圆领T恤", "朴素", "上衣", "黑色", [3, 6, 6, 3], 35, 40, 99, "5", "02"),
    goods_row("东门店", "S2601", "圆领T恤", "朴素", "上衣", "白色", [2, 2, 2, 2], 35, 40, 99, "5", "01"),
    goods_row("总仓", "S2602", "牛仔裤", "朴素", "裤装", "蓝色", [0, 4, 8, 8, 4], 80, 90, 259, "3", "03"),
    goods_row("总仓", "S2603", "羊毛衫", "暖阳", "上衣", "灰色", [1, 2, 2, 1], 120.5, 130, 399, "0", "04", "1"),
    goods_row("东门店", "S2603", "羊毛衫", "暖阳", "上衣", "红色", [0, 1, 1, 0], 120.5, 130, 399, "0", "05", "1"),
    goods_row("总仓", "S2604", "连衣裙", "暖阳", "裙装", "红色", [0, 0, 0, 0], 150, 160, 499, "", "05"),
    goods_row("总仓", "S2605", "丝巾", "朴素", "配饰", "花色", [20], 15, 18, 59, "1", ""),
]


def write_xlsx(path, rows, merge=None, formula=None):
    """One sheet "Sheet1" with the rows; optionally a merged range ("A2:A3") and a formula
    (cell, text)."""
    wb = xlsxwriter.Workbook(path)
    ws = wb.add_worksheet("Sheet1")
    for i, r in enumerate(rows):
        for j, v in enumerate(r):
            if v != "" and v is not None:
                ws.write(i, j, v)
    if merge:
        ws.merge_range(merge, rows[1][0])
    if formula:
        ws.write_formula(formula[0], formula[1])
    wb.close()


def write_xls(path, rows):
    wb = xlwt.Workbook(encoding="utf-8")
    ws = wb.add_sheet("Sheet1")
    for i, r in enumerate(rows):
        for j, v in enumerate(r):
            if v != "" and v is not None:
                ws.write(i, j, v)
    wb.save(path)


def write_csv(path, rows):
    with open(path, "w", newline="", encoding="utf-8") as f:
        csv.writer(f).writerows(rows)


def main():
    for name, titles in (("imp_cl", GOODS), ("kh", PARTNER), ("gys", PARTNER), ("vip", MEMBER)):
        write_xlsx(os.path.join(HERE, name + ".xlsx"), [titles])
        write_xls(os.path.join(HERE, name + ".xls"), [titles])
        write_csv(os.path.join(HERE, name + ".csv"), [titles])
    rows = [GOODS] + SAMPLE
    write_xlsx(os.path.join(HERE, "sample_goods.xlsx"), rows)
    write_xls(os.path.join(HERE, "sample_goods.xls"), rows)
    write_csv(os.path.join(HERE, "sample_goods.csv"), rows)

    os.makedirs(TESTS, exist_ok=True)
    t = lambda n: os.path.join(TESTS, n)
    # customers, suppliers and members
    customers = [PARTNER,
                 ["K001", "华联商场", "HLSC", "华联商场有限公司", "李四", "0755-1234", "", "", "A", "", "", "2026-01-01",
                  "2026-12-31", "深圳市'南山区'", "", "", "老客户", 1200.5],
                 ["K002", "百货大楼", "BHDL", "百货大楼", "王五", "", "", "", "", "", "", "", "", "", "", "", "", 0]]
    write_xlsx(t("customers.xlsx"), customers)
    members = [MEMBER,
               ["V0001", "张小姐", "ZXJ", "13800000000", "", "", "", "", "2026-01-01", "2027-01-01", "1990-05-06", "金卡",
                95, 100, 0, 2000, "", 1]]
    write_xlsx(t("members.xlsx"), members)
    # hostile sheets
    quotes = [GOODS, goods_row("总仓", "Q'01", "O'Neil \"特别\"版; DROP TABLE d1800", "朴'素", "上衣", "白'色", [1], 10, 10, 20)]
    write_xlsx(t("quotes_chinese.xlsx"), quotes)
    long_cell = [GOODS, goods_row("总仓", "L01", "长" * 10000, "朴素", "上衣", "白色", [1], 10, 10, 20)]
    write_xlsx(t("long_cell.xlsx"), long_cell)
    letters = [GOODS, goods_row("总仓", "A01", "衬衫", "朴素", "上衣", "白色", [1, "abc", 3], 10, 10, 20),
               goods_row("总仓", "A02", "衬衫", "朴素", "上衣", "白色", [1, 2], 10, 10, 20)]
    write_xlsx(t("letters_in_quantity.xlsx"), letters)
    write_xls(t("letters_in_quantity.xls"), letters)
    write_csv(t("letters_in_quantity.csv"), letters)
    bad = [GOODS,
           goods_row("总仓", "", "无款号", "朴素", "上衣", "白色", [1], 10, 10, 20),
           goods_row("总仓", "B01", "衬衫", "朴素", "上衣", "白色", [1], 10, 10, 20),
           goods_row("总仓", "b01", "衬衫", "朴素", "上衣", "白色", [2], 10, 10, 20),
           goods_row("总仓", "B02", "衬衫", "朴素", "上衣", "白色", [1], 10, 10, 20, "7"),
           goods_row("总仓", "B03", "衬衫", "朴素", "上衣", "白色", [1], 10, 10, 20)]
    write_xlsx(t("bad_rows.xlsx"), bad)
    empty_rows = [GOODS, goods_row("总仓", "E01", "衬衫", "朴素", "上衣", "白色", [1], 10, 10, 20), [], [],
                  goods_row("总仓", "E02", "裤子", "朴素", "裤装", "黑色", [2], 10, 10, 20)]
    write_xlsx(t("empty_rows.xlsx"), empty_rows)
    write_xlsx(t("formula.xlsx"), [GOODS, goods_row("总仓", "F01", "衬衫", "朴素", "上衣", "白色", [1, 2], 10, 10, 20)],
               formula=("N2", "=M2*2"))
    write_xlsx(t("merged.xlsx"), [GOODS, goods_row("总仓", "M01", "衬衫", "朴素", "上衣", "白色", [1], 10, 10, 20),
                                  goods_row("", "M01", "衬衫", "朴素", "上衣", "黑色", [1], 10, 10, 20)], merge="A2:A3")
    with open(os.path.join(HERE, "sample_goods.xlsx"), "rb") as f:
        data = f.read()
    with open(t("truncated.xlsx"), "wb") as f:
        f.write(data[: len(data) // 2])
    with open(os.path.join(HERE, "sample_goods.xls"), "rb") as f:
        data = f.read()
    with open(t("truncated.xls"), "wb") as f:
        f.write(data[: len(data) // 3])
    with open(t("not_a_sheet.xlsx"), "w", encoding="utf-8") as f:
        f.write("这不是电子表格,只是一段文字。\n")
    with open(t("not_a_sheet.xls"), "w", encoding="utf-8") as f:
        f.write("plain text, not a workbook\n")


def large_sheet(rows, path):
    """A goods sheet of `rows` rows (benchmarks): styles in four colours, in two warehouses."""
    colours = ["白色", "黑色", "红色", "蓝色"]
    out = [GOODS]
    for i in range(rows):
        style = "B%05d" % (i // 8)
        out.append(goods_row("总仓" if i % 2 == 0 else "东门店", style, "款式%d" % (i // 8), "品牌%d" % (i % 7),
                             "类别%d" % (i % 11), colours[(i // 2) % 4], [1 + i % 5, 2, 3, i % 4], 50, 60, 199,
                             "5", "%02d" % ((i // 2) % 4 + 1)))
    if path.endswith(".csv"):
        write_csv(path, out)
    else:
        write_xlsx(path, out)


if __name__ == "__main__":
    import sys
    if len(sys.argv) == 4 and sys.argv[1] == "--rows":
        large_sheet(int(sys.argv[2]), sys.argv[3])
    else:
        main()
