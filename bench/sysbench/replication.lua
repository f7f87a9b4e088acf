-- SPDX-License-Identifier: Apache-2.0
-- The statements of lkbench's workload, made by sysbench on the tables that lkbench has created and loaded.
-- An insert describes its table by a prepare, draws an ID, inserts a row and commits; an update describes, sets all
-- columns of a row, its ID to what it is included, and commits; a delete deletes a row and commits. Values are those of
-- rows that are there. Each thread tells at its end how many statements it made, counted as they are for lkbench.

sysbench.cmdline.options = {
  tables = {"how many of lkbench's tables", 4},
  rows = {"rows of each table to draw from", 10000},
  insert = {"weight of inserts", 40},
  update = {"weight of updates", 40},
  delete = {"weight of deletes", 20},
}

local POOL = 100 -- texts of values for each table

local function literal(column)
  if column.type == "double" or column.type == "decimal" then
    return string.format("IFNULL(%s, 'NULL')", column.name)
  end
  return string.format("QUOTE(%s)", column.name)
end

local function columns_of(con, name)
  local columns = {}
  local result = con:query("SELECT column_name, data_type FROM information_schema.columns WHERE table_schema = " ..
    "DATABASE() AND table_name = '" .. name .. "' AND column_name <> 'ID' ORDER BY ordinal_position")
  for _ = 1, result.nrows do
    local row = result:fetch_row()
    columns[#columns + 1] = {name = row[1], type = row[2]}
  end
  result:free()
  return columns
end

-- The rows of the pool, each a list of literals.
local function literals(con, name, columns)
  local expressions, rows = {}, {}
  for i, column in ipairs(columns) do expressions[i] = literal(column) end
  local query = "SELECT %s FROM %s ORDER BY ID LIMIT %d"
  local result = con:query(string.format(query, table.concat(expressions, ", "), name, POOL))
  for i = 1, result.nrows do rows[i] = result:fetch_row() end
  result:free()
  return rows
end

local function read_table(con, name)
  local columns = columns_of(con, name)
  local names, values, settings = {}, {}, {}
  for i, column in ipairs(columns) do names[i] = column.name end
  for i, row in ipairs(literals(con, name, columns)) do
    values[i] = table.concat(row, ", ")
    for j, value in ipairs(row) do row[j] = names[j] .. "=" .. value end
    settings[i] = table.concat(row, ",")
  end
  return {
    describe = "SELECT * FROM " .. name,
    insert = string.format("INSERT INTO %s (ID, %s) VALUES (", name, table.concat(names, ", ")),
    update = "UPDATE " .. name .. " SET ",
    delete = "DELETE FROM " .. name .. " WHERE ID = ",
    values = values,
    settings = settings,
  }
end

function thread_init()
  con = sysbench.sql.driver():connect()
  con:query("SET autocommit = 0, tx_isolation = 'READ-COMMITTED'")
  tables = {}
  for i = 1, sysbench.opt.tables do tables[i] = read_table(con, "lk_rep_table" .. i) end
  con:query("COMMIT")
  statements = 0
end

local function draw(count) return sysbench.rand.uniform(1, count) end

local function describe(t) con:prepare(t.describe):close() end

local function commit(others)
  con:query("COMMIT")
  statements = statements + others + 1
end

local function insert(t)
  describe(t)
  local id = con:query_row("SELECT NEXTVAL(lk_rep_id_seq)")
  con:query(string.format("%s%s, %s)", t.insert, id, t.values[draw(#t.values)]))
  commit(3)
end

local function update(t)
  describe(t)
  local id = draw(sysbench.opt.rows)
  con:query(string.format("%sID=%d,%s WHERE ID=%d", t.update, id, t.settings[draw(#t.settings)], id))
  commit(2)
end

local function delete(t)
  con:query(t.delete .. draw(sysbench.opt.rows))
  commit(1)
end

function event()
  local t = tables[draw(#tables)]
  local choice = draw(sysbench.opt.insert + sysbench.opt.update + sysbench.opt.delete)
  if choice <= sysbench.opt.insert then
    insert(t)
  elseif choice <= sysbench.opt.insert + sysbench.opt.update then
    update(t)
  else
    delete(t)
  end
end

function thread_done()
  print("statements: " .. statements)
  con:disconnect()
end
