-- The questions analysts ask of the statistics store, for schema.sql and schema-sharded.sql
-- alike. Run them in the store's database, e.g.
--   clickhouse-client --database kt --multiquery < queries.sql
-- Each query follows a line "-- query: <name>"; FINAL counts an event sent twice once.

-- query: events_per_day_and_version
-- How many events each version sent, day by day.
SELECT date, version, count() AS events
FROM events FINAL
GROUP BY date, version
ORDER BY date, version;

-- query: active_installations_per_day
-- Installations that sent anything, day by day.
SELECT date, uniqExact(installation) AS installations
FROM events FINAL
GROUP BY date
ORDER BY date;

-- query: capture_funnel_per_version
-- Sessions that started a capture, then stopped it, then showed the recording in its folder or
-- shared it (within an hour), per version.
SELECT
    version,
    countIf(step >= 1) AS started,
    countIf(step >= 2) AS stopped,
    countIf(step >= 3) AS shown_or_shared
FROM
(
    SELECT
        version,
        sid,
        windowFunnel(3600)(time,
            name = 'CAPTURE_START',
            name = 'CAPTURE_STOP',
            name = 'SHOW_IN_FOLDER' OR name LIKE '%SHARING%' OR name LIKE 'EMAIL_%') AS step
    FROM events FINAL
    GROUP BY version, sid
)
GROUP BY version
ORDER BY version;

-- query: failed_starts_per_version
-- Starts, and starts after a session that failed (APP_FAILED), per version.
SELECT
    version,
    countIf(name IN ('APP_FIRST_START', 'APP_FIRST_START_AFTER_MINOR_UPDATE', 'APP_EVERY_START'))
        AS starts,
    countIf(name = 'APP_FAILED') AS failed,
    round(failed / starts, 3) AS failed_per_start
FROM events FINAL
GROUP BY version
ORDER BY version;

-- query: capture_settings_per_version
-- How captures are set up: the values of FPS and CODEC at CAPTURE_START, per version.
SELECT version, params.key AS property, params.value AS value, count() AS captures
FROM events FINAL
ARRAY JOIN params
WHERE name = 'CAPTURE_START' AND params.key IN ('FPS', 'CODEC')
GROUP BY version, property, value
ORDER BY version, property, captures DESC, value;
