-- The statistics store on one ClickHouse server (18.16 or later): the table the uploader inserts
-- into. Run it in the database of your choice, e.g.
--   clickhouse-client --query "CREATE DATABASE IF NOT EXISTS kt"
--   clickhouse-client --database kt --multiquery < schema.sql
--
-- One row per event. A batch that was sent twice (the uploader resends the batch in flight after
-- a crash or a lost reply) leaves the same rows twice until a merge; ReplacingMergeTree keeps one
-- row per sorting key, whose last column is the event's id, and FINAL (as in queries.sql)
-- collapses them in every answer before that.
--
-- Properties are the Nested column "params": two arrays of the same length, so any key can be
-- asked for without a column of its own:
--   params.value[indexOf(params.key, 'FPS')]       the value of FPS ('' when the event has none)
--   ... ARRAY JOIN params WHERE params.key = 'FPS'  one row per property

CREATE TABLE IF NOT EXISTS events
(
    id UUID,                   -- 128 random bits, made when the event was spooled
    ts UInt64,                 -- the event's UTC time in milliseconds since 1970
    time DateTime('UTC') MATERIALIZED toDateTime(intDiv(ts, 1000), 'UTC'),
    date Date MATERIALIZED toDate(time),
    sid String,                -- the application's session
    installation String,       -- the installation's id
    app String,                -- the identity: product, and "/partner" for a partner's build
    version String,            -- the application's version
    name String,               -- the event, e.g. CAPTURE_START
    params Nested(key String, value String)
)
ENGINE = ReplacingMergeTree
PARTITION BY toYYYYMM(date)
ORDER BY (date, name, installation, id);
